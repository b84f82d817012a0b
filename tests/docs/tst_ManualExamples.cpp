#include "support/IsolatedHome.h"
#include "support/LogCapture.h"

#include <QApplication>
#include <QFile>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>

// Each whole document among the examples of a page: it runs, shows something, and prints no
// warning. With TESSALINE_PICTURES set to a folder, pictures for the page are written there.
class tst_ManualExamples : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void runs_data();
    void runs();

private:
    static QStringList documentsOf(const QString &page);

    QTemporaryDir m_folder;
    QQmlEngine m_engine; // one for all: no second one may start after it
};

void tst_ManualExamples::initTestCase()
{
    m_engine.addImportPath(":/imports");
    QFile info(m_folder.filePath("appinfo.json"));
    QVERIFY(info.open(QIODevice::WriteOnly) && info.write("{}") == 2);
}

// What stands between "```qml" and "```" and begins with an import.
QStringList tst_ManualExamples::documentsOf(const QString &page)
{
    QFile file(qEnvironmentVariable("TESSALINE_SOURCE_DIR") + "/docs/" + page);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("Can't read %s", qPrintable(file.fileName()));
    QStringList documents;
    const QStringList parts = QString::fromUtf8(file.readAll()).split("```qml\n").mid(1);
    for (const QString &part : parts) {
        if (part.startsWith("import "))
            documents.append(part.left(part.indexOf("```")));
    }
    return documents;
}

void tst_ManualExamples::runs_data()
{
    QTest::addColumn<QString>("document");
    QTest::addColumn<QString>("picture"); // empty: none
    const QMap<QString, QStringList> pages{
        {"controls.md", {"callout-rectangle", QString(), "image-button"}},
        {"sign-in.md", {QString()}}};
    for (auto page = pages.begin(); page != pages.end(); ++page) {
        const QStringList documents = documentsOf(page.key());
        QCOMPARE(documents.size(), page.value().size());
        for (int i = 0; i < documents.size(); ++i)
            QTest::addRow("%s, %d", qPrintable(page.key()), i + 1)
                << documents.at(i) << page.value().at(i);
    }
}

void tst_ManualExamples::runs()
{
    QFETCH(QString, document);
    QFETCH(QString, picture);
    static int number = 0;
    QFile file(m_folder.filePath(QString("example%1.qml").arg(++number)));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(document.toUtf8()) > 0);
    file.close();

    LogCapture log;
    QQuickView view(&m_engine, nullptr);
    view.setSource(QUrl::fromLocalFile(file.fileName()));
    QVERIFY2(view.status() == QQuickView::Ready, qPrintable(log.dump()));
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    QTRY_VERIFY([&] { // something is drawn
        const QImage grab = view.grabWindow();
        for (int y = 0; y < grab.height(); y += 4) {
            for (int x = 0; x < grab.width(); x += 4) {
                if (grab.pixel(x, y) != grab.pixel(0, 0))
                    return true;
            }
        }
        return false;
    }());
    // The very first start of a sign-in dialog has no list to read.
    int expected = log.count(QtWarningMsg, "qml", "SyntaxError: JSON.parse: Parse error")
                   + log.count(QtWarningMsg, "default", "SyntaxError: JSON.parse: Parse error");
    QVERIFY(expected <= (document.contains("PortalDialog") ? 1 : 0));
    QVERIFY2(log.count(QtWarningMsg) + log.count(QtCriticalMsg) == expected,
             qPrintable(log.dump()));
    const QString folder = qEnvironmentVariable("TESSALINE_PICTURES");
    if (folder.isEmpty() || picture.isEmpty())
        return;
    QTest::qWait(500); // canvases draw a little later than all else
    QVERIFY(view.grabWindow().save(folder + '/' + picture + ".png"));
}

int main(int argc, char **argv)
{
    return runIsolatedTest<tst_ManualExamples, QApplication>(argc, argv);
}

#include "tst_ManualExamples.moc"
