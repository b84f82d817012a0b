#include "examples/ExampleWindow.h"
#include "support/DevelopmentPortal.h"
#include "support/IsolatedHome.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

// The applet of docs/publishing.md, as it stands there, with the example items.
class tst_PublishingGuide : public QObject
{
    Q_OBJECT

private slots:
    void appletSignsInListsAndDownloads();
};

namespace {

// The code block of the document that is a whole applet.
QString appletIn(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QString();
    const QString text = QString::fromUtf8(file.readAll());
    const int begin = text.indexOf(QStringLiteral("```qml\nimport ")) + 7;
    return text.mid(begin, text.indexOf(QStringLiteral("```"), begin) - begin);
}

bool write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

} // namespace

void tst_PublishingGuide::appletSignsInListsAndDownloads()
{
    const QString source = QString::fromLocal8Bit(qgetenv("TESSALINE_SOURCE_DIR"));
    DevelopmentPortal portal;
    QVERIFY2(portal.start({"--items", source + "/examples/items"}), qPrintable(portal.output()));
    QString applet = appletIn(source + "/docs/publishing.md");
    QVERIFY(applet.contains("http://127.0.0.1:8080"));
    applet.replace("http://127.0.0.1:8080", portal.url());
    QTemporaryDir folder;
    QVERIFY(write(folder.filePath("main.qml"), applet.toUtf8()));
    QVERIFY(write(folder.filePath("appinfo.json"), "{}"));

    ExampleWindow window(QDir(source + "/examples").relativeFilePath(folder.path()));
    QVERIFY(window.isReady());
    QVERIFY(window.expose());
    QTRY_COMPARE(window.text("message"), QString("Press an app to download it."));
    QTRY_VERIFY(window.item("tide-table"));
    QCOMPARE(window.item("message")->property("textFormat").toInt(), int(Qt::PlainText));
    const auto *title = window.item("tide-table")->property("contentItem").value<QQuickItem *>();
    QVERIFY(title && title->property("textFormat").isValid()); // not the button's own label
    QCOMPARE(title->property("textFormat").toInt(), int(Qt::PlainText));
    window.picture(); // the list is laid out now
    window.click("tide-table");
    QTRY_VERIFY(window.text("message").startsWith("Downloaded to "));
    QVERIFY(QFile::exists(QDir::homePath() + "/Zemrik/Halvora/Apps/tide-table/main.qml"));
    QVERIFY(QFile::exists(QDir::homePath() + "/Zemrik/Halvora/Data/tide-readings/tides.json"));
    QCOMPARE(window.warningCount(), 0);
}

TESSALINE_INPUT_TEST_MAIN(tst_PublishingGuide)
#include "tst_PublishingGuide.moc"
