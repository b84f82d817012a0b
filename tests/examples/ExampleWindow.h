#pragma once

#include "player/AppletsCommandLineParser.h"
#include "player/AppletsPlayer.h"
#include "player/AppView.h"

#include <QApplication>
#include <QImage>
#include <QQmlEngine>
#include <QQuickItem>
#include <QSet>
#include <QTest>

#include <memory>

// An example of the source tree in the player's window.
class ExampleWindow
{
public:
    explicit ExampleWindow(const QString &name)
    {
        const QString source = QString::fromLocal8Bit(qgetenv("TESSALINE_SOURCE_DIR"));
        m_player.commandLineParser()->parse({QStringLiteral("player")});
        m_view.reset(m_player.createAppView(source + "/examples/" + name, nullptr));
        QObject::connect(m_view->engine(), &QQmlEngine::warnings, m_view.get(),
                         [this](const QList<QQmlError> &list) { m_warningCount += list.size(); });
    }

    AppView *view() const { return m_view.get(); }
    bool isReady() const { return m_view->status() == QQuickView::Ready && m_view->rootObject(); }
    bool expose() { return QTest::qWaitForWindowExposed(m_view.get()); }
    int warningCount() const { return m_warningCount; }

    QQuickItem *item(const QString &objectName) const
    {
        return findItem(m_view->rootObject(), objectName);
    }
    // All items of that name, in the order in which the tree has them.
    QList<QQuickItem *> items(const QString &objectName) const
    {
        QList<QQuickItem *> found;
        QList<QQuickItem *> rest{m_view->rootObject()};
        while (!rest.isEmpty()) {
            QQuickItem *item = rest.takeFirst();
            if (item->objectName() == objectName)
                found.append(item);
            rest = item->childItems() + rest;
        }
        return found;
    }
    QString text(const QString &objectName, const char *property = "text") const
    {
        const QQuickItem *found = item(objectName);
        return found ? found->property(property).toString() : QStringLiteral("(no such item)");
    }
    void click(const QString &objectName) { clickItem(item(objectName)); }
    void clickItem(QQuickItem *item)
    {
        const QPointF center = item->mapToScene(QPointF(item->width() / 2, item->height() / 2));
        QTest::mouseClick(m_view.get(), Qt::LeftButton, Qt::NoModifier, center.toPoint());
    }
    void type(const QString &text)
    {
        for (const QChar &character : text)
            QTest::sendKeyEvent(QTest::Click, m_view.get(), Qt::Key_unknown, character,
                                Qt::NoModifier);
    }
    void resize(int width, int height)
    {
        m_view->resize(width, height);
        QTRY_COMPARE(m_view->rootObject()->width(), qreal(width));
    }
    QImage picture() { return m_view->grabWindow(); }

    // For pages that flow into columns: their rows of data, and the test.
    static void addColumnRows()
    {
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("columns");
        QTest::newRow("phone") << 360 << 1;
        QTest::newRow("tablet") << 800 << 2;
        QTest::newRow("desktop") << 1280 << 3;
    }
    void testColumns()
    {
        QFETCH(int, width);
        QFETCH(int, columns);
        const QObject *root = m_view->rootObject();
        const qreal unit = root->property("unit").toReal();
        resize(qRound(width * unit), qRound(640 * unit));
        QTRY_COMPARE(root->property("columnCount").toInt(), columns);
    }
    static void addSizeRows()
    {
        QTest::addColumn<QSize>("size");
        QTest::newRow("360x640") << QSize(360, 640);
        QTest::newRow("1280x800") << QSize(1280, 800);
    }

    // How many different colours the picture has: one of an empty or black window has few.
    static int colorCount(const QImage &picture)
    {
        QSet<QRgb> colors;
        for (int y = 0; y < picture.height(); y += 2) {
            for (int x = 0; x < picture.width(); x += 2)
                colors.insert(picture.pixel(x, y));
        }
        return colors.size();
    }

    static QQuickItem *findItem(QQuickItem *item, const QString &objectName)
    {
        if (!item || item->objectName() == objectName)
            return item;
        for (QQuickItem *child : item->childItems()) {
            if (QQuickItem *found = findItem(child, objectName))
                return found;
        }
        return nullptr;
    }

private:
    AppletsPlayer m_player{nullptr};
    std::unique_ptr<AppView> m_view;
    int m_warningCount = 0;
};
