#pragma once

#include <QDir>
#include <QJSValue>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include <functional>
#include <memory>

// A document that has a dialog in its property "dialog", and the dialog's window, driven by events
// as a user's. Items are found by what they show.
class DialogScene
{
public:
    // The engine's import paths are set.
    DialogScene(QQmlEngine &engine, const QByteArray &document, const QVariantMap &properties = {})
    {
        QQmlComponent component(&engine);
        component.setData(document, QUrl::fromLocalFile(QDir::homePath() + "/document.qml"));
        m_root.reset(component.createWithInitialProperties(properties));
        if (!m_root) {
            fprintf(stderr, "%s\n", qPrintable(component.errorString()));
            std::abort();
        }
    }

    QObject *root() const { return m_root.get(); }
    QObject *object(const char *name) const { return m_root->property(name).value<QObject *>(); }
    QObject *dialog() const { return object("dialog"); }
    bool isOpen() const { return dialog()->property("visible").toBool(); }

    QQuickItem *content() const { return dialog()->property("contentItem").value<QQuickItem *>(); }
    QQuickWindow *window() const { return content()->window(); }
    bool open()
    {
        QMetaObject::invokeMethod(dialog(), "open");
        return content()->window() && QTest::qWaitForWindowExposed(content()->window());
    }

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
        QList<QQuickItem *> list;
        find([&](QQuickItem *item) {
            if (predicate(item))
                list.append(item);
            return false;
        });
        return list;
    }
    static bool isA(const QQuickItem *item, const char *type)
    {
        // "Button" is the class of Button_QMLTYPE_5, not of ButtonStyle_QMLTYPE_6.
        const QByteArray name = item->metaObject()->className();
        return name == type || name.startsWith(QByteArray(type) + '_');
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

    static QPoint center(const QQuickItem *item)
    {
        return item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint();
    }
    static void click(QQuickItem *item)
    {
        QTest::mouseClick(item->window(), Qt::LeftButton, Qt::NoModifier, center(item));
    }
    void key(int key) { QTest::keyClick(window(), static_cast<Qt::Key>(key)); }
    void type(QQuickItem *field, const QString &text)
    {
        click(field);
        for (const QChar &character : text)
            QTest::sendKeyEvent(QTest::Click, window(), Qt::Key_unknown, character, Qt::NoModifier);
    }

private:
    std::unique_ptr<QObject> m_root;
};
