#pragma once

#include "support/LogCapture.h"

#include <QApplication>
#include <QImage>
#include <QMetaProperty>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQmlExpression>
#include <QQmlListReference>
#include <QQuickItem>
#include <QQuickView>
#include <QQuickWindow>
#include <QTest>
#include <QtMath>
#include <QTouchDevice>

#include <functional>
#include <memory>

// Documents with a dialog in them, in real windows, and what a hand does to them; items are found by
// what they show, or by the ids of the dialog's own document. One engine serves the whole process.
// From beginLog() every line that it or Qt warns with is kept: a test then ends with
// endTest().
class DialogStage
{
public:
    DialogStage()
    {
        m_engine.addImportPath(QString::fromLocal8Bit(qgetenv("TESSALINE_QML_IMPORT_DIR")));
        m_engine.addImportPath(QStringLiteral(":/imports"));
    }
    ~DialogStage() { close(); }

    QQmlEngine *engine() { return &m_engine; }
    QQuickWindow *window() const { return m_window; }

    // A document whose property "subject" is the dialog; shows no window of its own accord.
    bool load(const QByteArray &document, const QVariantMap &properties = {},
              const QUrl &url = QUrl(QStringLiteral("file:///stage.qml")))
    {
        close();
        QQmlComponent component(&m_engine);
        component.setData(document, url);
        m_root.reset(component.createWithInitialProperties(properties));
        if (!m_root)
            qWarning("%s", qPrintable(component.errorString()));
        return m_root != nullptr;
    }
    // Shows an item that was made elsewhere; it becomes the root.
    bool showRoot(QObject *object)
    {
        m_root.reset(object);
        m_window = qobject_cast<QQuickWindow *>(object);
        if (!m_window)
            showItem(qobject_cast<QQuickItem *>(object));
        m_window->show();
        return QTest::qWaitForWindowExposed(m_window);
    }
    // A document whose root is an item (shown in a view) or a window of its own, 800 x 600. `body`
    // goes into the root; with an id "subject" it is what subject() gives.
    bool show(const QString &body, const QString &root = QStringLiteral("Item"))
    {
        return load(document(body, root).toUtf8()) && showRoot(m_root.release());
    }
    void close()
    {
        m_view.reset();
        m_root.reset();
        m_window = nullptr;
    }
    QObject *root() const { return m_root.get(); }
    QObject *object(const char *name) const { return m_root->property(name).value<QObject *>(); }
    QObject *subject() const { return object("subject"); }
    bool isOpen() const { return subject()->property("visible").toBool(); }

    // The item that a dialog's document puts into Qt's dialog.
    static QQuickItem *contentOf(QObject *dialog)
    {
        QQmlListReference data(dialog, "data");
        for (int i = 0; i < data.count(); ++i) {
            if (auto *item = qobject_cast<QQuickItem *>(data.at(i)))
                return item;
        }
        return nullptr;
    }
    // What a script in the dialog's own document would get, its ids included.
    static QVariant inside(QObject *dialog, const QString &script)
    {
        return evaluate(contentOf(dialog), script);
    }
    static QVariant evaluate(QObject *object, const QString &script)
    {
        QQmlExpression expression(qmlContext(object), object, script);
        bool undefined = false;
        const QVariant value = expression.evaluate(&undefined);
        if (expression.hasError())
            qWarning("%s", qPrintable(expression.error().toString()));
        return value;
    }
    QVariant insideSubject(const QString &script) const { return inside(subject(), script); }
    QQuickItem *innerItem(const QString &script) const
    {
        return insideSubject(script).value<QQuickItem *>();
    }
    QQuickWindow *dialogWindow() const { return contentOf(subject())->window(); }
    // Opens the dialog and waits until it is drawn.
    bool open()
    {
        QMetaObject::invokeMethod(subject(), "open");
        return dialogWindow() && QTest::qWaitForWindowExposed(dialogWindow());
    }
    // Opens the dialog as a window manager would: drawn, and with the keyboard.
    bool openDialog()
    {
        // First the document: without a window manager the X server gives the keyboard back late,
        // and would take it from the dialog.
        m_window->requestActivate();
        if (!QTest::qWaitForWindowActive(m_window))
            return false;
        if (!open())
            return false;
        QQuickWindow *dialog = dialogWindow();
        dialog->requestActivate();
        return QTest::qWaitForWindowActive(dialog)
               && QTest::qWaitFor([dialog] { return dialog->activeFocusItem() != nullptr; });
    }

    // All that is in the dialog's window, Qt's own buttons too.
    QQuickItem *content() const { return subject()->property("contentItem").value<QQuickItem *>(); }
    using Predicate = std::function<bool(QQuickItem *)>;
    // The first item that the predicate takes, parents before children; only what can be seen.
    QQuickItem *find(const Predicate &predicate) const { return find(content(), predicate); }
    static QQuickItem *find(QQuickItem *item, const Predicate &predicate)
    {
        if (!item || !item->isVisible())
            return nullptr;
        if (predicate(item))
            return item;
        for (QQuickItem *child : item->childItems()) {
            if (QQuickItem *found = find(child, predicate))
                return found;
        }
        return nullptr;
    }
    QList<QQuickItem *> findAll(const Predicate &predicate) const
    {
        return findAll(content(), predicate);
    }
    static QList<QQuickItem *> findAll(QQuickItem *parent, const Predicate &predicate)
    {
        QList<QQuickItem *> list;
        find(parent, [&](QQuickItem *item) {
            if (predicate(item))
                list.append(item);
            return false;
        });
        return list;
    }
    // Of a document or class.
    static bool isA(const QQuickItem *item, const QByteArray &type)
    {
        // "Button" is the class of Button_QMLTYPE_5, not of ButtonStyle_QMLTYPE_6.
        const QByteArray name = item->metaObject()->className();
        return name == type || name.startsWith(type + "_QML");
    }
    QQuickItem *withText(const QString &text, const char *type) const
    {
        return find([&](QQuickItem *item) {
            return isA(item, type) && item->property("text").toString() == text;
        });
    }
    QQuickItem *text(const QString &text) const { return withText(text, "QQuickText"); }
    QQuickItem *button(const QString &text) const { return withText(text, "Button"); }
    QQuickItem *checkBox(const QString &text) const { return withText(text, "CheckBox"); }
    QQuickItem *imageButton(const QString &picture) const
    {
        return find([&](QQuickItem *item) {
            return isA(item, "ImageButton")
                   && item->property("source").toUrl().fileName() == picture;
        });
    }
    QList<QQuickItem *> fields() const
    {
        return findAll([](QQuickItem *item) { return isA(item, "TextField"); });
    }
    // Until a page of a StackView has come in.
    void waitForPage() const
    {
        QQuickItem *stack = find([](QQuickItem *item) { return isA(item, "StackView"); });
        QTRY_VERIFY(!stack->property("busy").toBool());
    }

    // Descendants, in the order in which they lie, whether they can be seen or not.
    static QList<QQuickItem *> items(QQuickItem *parent)
    {
        QList<QQuickItem *> list;
        for (QQuickItem *child : parent->childItems()) {
            list.append(child);
            list.append(items(child));
        }
        return list;
    }
    static QList<QQuickItem *> itemsOf(QQuickItem *parent, const QByteArray &type)
    {
        QList<QQuickItem *> list;
        for (QQuickItem *item : items(parent)) {
            if (isA(item, type))
                list.append(item);
        }
        return list;
    }
    // The item whose picture is "images/<name>.png".
    static QQuickItem *itemWithPicture(QQuickItem *parent, const QByteArray &type,
                                       const QString &name)
    {
        for (QQuickItem *item : itemsOf(parent, type)) {
            if (item->property("source").toUrl().path().endsWith("/images/" + name + ".png"))
                return item;
        }
        return nullptr;
    }
    static QPoint center(const QQuickItem *item)
    {
        return item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint();
    }
    // In the coordinates of the item's window.
    static QRectF rectOf(const QQuickItem *item)
    {
        return item->mapRectToScene(QRectF(0, 0, item->width(), item->height()));
    }

    static void click(QQuickItem *item)
    {
        QTest::mouseClick(item->window(), Qt::LeftButton, Qt::NoModifier, center(item));
    }
    static void doubleClick(QQuickItem *item)
    {
        QTest::mouseDClick(item->window(), Qt::LeftButton, Qt::NoModifier, center(item));
    }
    void key(int key) const { QTest::keyClick(dialogWindow(), static_cast<Qt::Key>(key)); }
    static void type(QQuickItem *field, const QString &text)
    {
        click(field);
        for (const QChar &character : text)
            QTest::sendKeyEvent(QTest::Click, field->window(), Qt::Key_unknown, character,
                                Qt::NoModifier);
    }
    static void tap(QQuickItem *item)
    {
        static QTouchDevice *device = QTest::createTouchDevice();
        QTest::touchEvent(item->window(), device).press(0, center(item), item->window());
        QTest::touchEvent(item->window(), device).release(0, center(item), item->window());
    }
    // For what a mouse and a finger do alike: rows of data, and the row's own way.
    static void addPointerRows()
    {
        QTest::addColumn<bool>("byTouch");
        QTest::newRow("mouse") << false;
        QTest::newRow("touch") << true;
    }
    static void press(QQuickItem *item)
    {
        QFETCH(bool, byTouch);
        (byTouch ? tap : click)(item);
    }

    // For a dialog's properties: the columns of data, one row per property, and the test.
    static void addPropertyColumns()
    {
        QTest::addColumn<QByteArray>("type");
        QTest::addColumn<bool>("writable");
        QTest::addColumn<QVariant>("value");
    }
    void testProperty() const
    {
        const QMetaObject *meta = subject()->metaObject();
        const int index = meta->indexOfProperty(QTest::currentDataTag());
        QVERIFY(index >= 0);
        const QMetaProperty found = meta->property(index);
        QTEST(QByteArray(found.typeName()), "type");
        QTEST(found.isWritable(), "writable");
        QTEST(found.read(subject()), "value");
    }

    static QColor pixel(const QImage &picture, const QPointF &point)
    {
        const qreal ratio = picture.devicePixelRatio();
        return picture.pixelColor(qFloor(point.x() * ratio), qFloor(point.y() * ratio));
    }

    // A picture for the documentation, where scripts/pictures names its folder.
    static void keepPicture(const QImage &picture, const QString &name)
    {
        const QString folder = QString::fromLocal8Bit(qgetenv("TESSALINE_PICTURES"));
        if (!folder.isEmpty() && !picture.save(folder + "/" + name))
            qWarning("Can't save %s", qPrintable(name));
    }
    // How far a colour stands out from another: 1 not at all, 21 black from white (WCAG 2).
    static qreal contrast(const QColor &a, const QColor &b)
    {
        const auto luminance = [](const QColor &color) {
            const auto linear = [](qreal value) {
                return value <= 0.03928 ? value / 12.92 : qPow((value + 0.055) / 1.055, 2.4);
            };
            return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF())
                   + 0.0722 * linear(color.blueF());
        };
        const qreal first = luminance(a);
        const qreal second = luminance(b);
        return (qMax(first, second) + 0.05) / (qMin(first, second) + 0.05);
    }
    // The best contrast that a pixel of the item has to the ground on which it lies.
    static qreal contrastOf(const QQuickItem *item, const QImage &picture, const QColor &ground)
    {
        const QRect rect = rectOf(item).toAlignedRect();
        qreal best = 1;
        for (int y = rect.top(); y <= rect.bottom(); ++y) {
            for (int x = rect.left(); x <= rect.right(); ++x)
                best = qMax(best, contrast(pixel(picture, QPointF(x, y)), ground));
        }
        return best;
    }

    // Video goes through a conversion that may round.
    static bool isNear(const QColor &a, const QColor &b)
    {
        return qAbs(a.red() - b.red()) + qAbs(a.green() - b.green()) + qAbs(a.blue() - b.blue())
               < 8;
    }

    // Lines at warning level and above, except those announced for this test.
    void expectWarning(const QString &words) { m_expected.append(words); }
    bool isSilent() const { return unexpected().isEmpty(); }
    const char *log()
    {
        m_text = unexpected().join('\n').toUtf8();
        return m_text.constData();
    }
    int warnings(const QString &words) const { return count(QtWarningMsg, words); }
    int count(QtMsgType type, const QString &words) const
    {
        int found = 0;
        for (const LogCapture::Message &message : m_log->messages()) {
            if (message.type == type && message.text.contains(words))
                ++found;
        }
        return found;
    }
    void beginLog()
    {
        m_log.reset();
        m_log = std::make_unique<LogCapture>();
        m_expected.clear();
    }
    void endLog() { m_log.reset(); }

    // What a test's cleanup() does: fails the test that has let a line through.
    void endTest()
    {
        close();
        QGuiApplication::setLayoutDirection(Qt::LeftToRight);
        const bool silent = isSilent();
        const QByteArray lines = log();
        endLog();
        QVERIFY2(silent, lines.constData());
    }

private:
    static QString document(const QString &body, const QString &root)
    {
        const bool isItem = root == QLatin1String("Item");
        return QStringLiteral("import QtQuick 2.15\n"
                              "import QtQuick.Window 2.15\n"
                              "import QtQuick.Controls 1.4\n"
                              "import QtQuick.Dialogs 1.2\n"
                              "import QtMultimedia 5.15\n"
                              "import Zemrik.Tessaline 1.0\n"
                              "import Zemrik.Tessaline.Dialogs 1.0\n"
                              "import \"qrc:/imports/Zemrik/Tessaline/Dialogs\" as Inner\n"
                              "%1 { width: 800; height: 600; %2\n"
                              "property QtObject subject: theSubject\n%3\n}\n")
            .arg(root, isItem ? QString() : QStringLiteral("visible: true"), body);
    }
    void showItem(QQuickItem *item)
    {
        m_view = std::make_unique<QQuickView>(&m_engine, nullptr);
        m_view->resize(int(item->width()), int(item->height()));
        item->setParentItem(m_view->contentItem());
        m_window = m_view.get();
    }
    QStringList unexpected() const
    {
        QStringList lines;
        for (const LogCapture::Message &message : m_log->messages()) {
            if (message.type == QtDebugMsg || message.type == QtInfoMsg)
                continue;
            // The X server's answer about a window that has just come or gone; no document's doing.
            bool announced = message.category == "qt.qpa.xcb";
            for (const QString &words : m_expected)
                announced = announced || message.text.contains(words);
            if (!announced)
                lines.append(QString::fromLatin1(message.category) + ": " + message.text);
        }
        return lines;
    }

    QQmlEngine m_engine;
    std::unique_ptr<QObject> m_root;
    std::unique_ptr<QQuickView> m_view;
    QQuickWindow *m_window = nullptr;
    std::unique_ptr<LogCapture> m_log;
    QStringList m_expected;
    QByteArray m_text;
};
