#include "catalogue/AppInfo.h"
#include "support/DevelopmentPortal.h"
#include "support/IsolatedHome.h"

#include <QJsonDocument>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QRegularExpression>

// What docs/portal.md shows, run as it stands there.
class tst_PortalGuide : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();

    void signingIn();
    void searching();
    void downloadingAnApp();
    void failedDownloadsEnd_data();
    void failedDownloadsEnd();
    void downloadingAnItem();
    void commandLines();
    void jsonFiles();

private:
    QStringList blocks(const QString &language, const QString &heading = QString()) const;
    QObject *load(const QString &heading, const QString &url);
    void addItems(DevelopmentPortal &portal);

    QString m_text;
    QQmlEngine m_engine;
    QQuickWindow m_window;
    std::unique_ptr<QObject> m_document;
};

namespace {

const QString itemId = "0123456789abcdef0123456789abcdef";

QObject *findByText(const QObject *root, const char *property, const QString &text)
{
    for (QObject *child : root->findChildren<QObject *>()) {
        if (child->property(property).toString() == text)
            return child;
    }
    return nullptr;
}

} // namespace

void tst_PortalGuide::initTestCase()
{
    QFile file(qEnvironmentVariable("TESSALINE_SOURCE_DIR") + "/docs/portal.md");
    QVERIFY(file.open(QIODevice::ReadOnly));
    m_text = QString::fromUtf8(file.readAll());
    m_engine.addImportPath(qEnvironmentVariable("TESSALINE_QML_IMPORT_DIR"));
    m_engine.addImportPath(":/imports");
}

void tst_PortalGuide::cleanup()
{
    m_document.reset();
    QDir(QDir::homePath() + "/Zemrik").removeRecursively();
}

// The blocks of code of that language; with a heading, those below it.
QStringList tst_PortalGuide::blocks(const QString &language, const QString &heading) const
{
    const int begin = heading.isEmpty() ? 0 : m_text.indexOf("\n## " + heading + "\n");
    const int end = heading.isEmpty() ? m_text.size() : m_text.indexOf("\n## ", begin + 4);
    const QString part = begin < 0 ? QString() : m_text.mid(begin, end < 0 ? -1 : end - begin);
    const QRegularExpression block("^```" + language + "\n(.*?)^```$",
                                   QRegularExpression::MultilineOption
                                       | QRegularExpression::DotMatchesEverythingOption);
    QStringList result;
    auto matches = block.globalMatch(part);
    while (matches.hasNext())
        result.append(matches.next().captured(1));
    return result;
}

QObject *tst_PortalGuide::load(const QString &heading, const QString &url)
{
    const QStringList documents = blocks("qml", heading);
    if (documents.size() != 1)
        return nullptr;
    QString document = documents.first();
    document.replace("http://localhost:8080", url);
    QQmlComponent component(&m_engine);
    component.setData(document.toUtf8(), QUrl::fromLocalFile(QDir::homePath() + "/Guide.qml"));
    m_document.reset(component.create());
    if (!m_document)
        qWarning() << component.errors();
    // Views fill themselves in a window only.
    if (auto *item = qobject_cast<QQuickItem *>(m_document.get()))
        item->setParentItem(m_window.contentItem());
    m_window.show();
    return m_document.get();
}

void tst_PortalGuide::addItems(DevelopmentPortal &portal)
{
    portal.addItem("fieldnotes", {{"title", "Field notes"}, {"tags", QStringList{"notes"}}},
                   {{"data/appinfo.json", "{}"}, {"data/main.qml", "Item {}"}});
    portal.addItem("other", {{"title", "Another app"}}, {{"data/appinfo.json", "{}"}});
    portal.addItem(itemId, {{"type", "Tile Package"}, {"name", "t.tpk"}}, {{"t.tpk", "tiles"}});
}

void tst_PortalGuide::signingIn()
{
    DevelopmentPortal portal;
    QVERIFY2(portal.start(), qPrintable(portal.output()));
    QObject *app = load("Signing in", portal.url());
    QVERIFY(app);
    QObject *user = findByText(app, "placeholderText", "User name");
    QObject *password = findByText(app, "placeholderText", "Password");
    QObject *button = findByText(app, "text", "Sign in");
    QVERIFY(user && password && button);
    user->setProperty("text", "demo");
    password->setProperty("text", "wrong");
    QMetaObject::invokeMethod(button, "clicked");
    QTRY_VERIFY(findByText(app, "text", "Unable to generate token."));
    password->setProperty("text", "demo");
    QMetaObject::invokeMethod(button, "clicked");
    QTRY_VERIFY(findByText(app, "text", "Hello, demo"));
}

void tst_PortalGuide::searching()
{
    DevelopmentPortal portal;
    addItems(portal);
    QVERIFY2(portal.start(), qPrintable(portal.output()));
    QObject *app = load("Searching", portal.url());
    QVERIFY(app);
    QObject *view = findByText(app, "cacheBuffer", "320"); // Qt's default for a list
    QVERIFY(view);
    QTRY_COMPARE(view->property("count").toInt(), 2);
    QObject *field = findByText(app, "placeholderText", "Title, #tag or @owner");
    QVERIFY(field);
    field->setProperty("text", "#notes");
    QTRY_COMPARE(view->property("count").toInt(), 1);
    const auto *rows = view->property("contentItem").value<QQuickItem *>();
    const auto shown = [rows] {
        QStringList texts;
        for (const QQuickItem *row : rows->childItems()) {
            if (row->property("text").isValid() && row->isVisible())
                texts.append(row->property("text").toString());
        }
        return texts;
    };
    QTRY_COMPARE(shown(), QStringList(QString::fromUtf8("Field notes ↓")));
    for (const QQuickItem *row : rows->childItems()) { // never HTML of the portal's
        if (row->property("text").isValid()) {
            const QVariant format = QQmlProperty::read(row, "contentItem.textFormat");
            QVERIFY(format.isValid());
            QCOMPARE(format.toInt(), int(Qt::PlainText));
        }
    }
}

void tst_PortalGuide::downloadingAnApp()
{
    DevelopmentPortal portal;
    addItems(portal);
    QVERIFY2(portal.start(), qPrintable(portal.output()));
    QObject *downloads = load("Downloading an app", portal.url());
    QVERIFY(downloads);
    AppInfo found(QVariantMap{{"id", "fieldnotes"}}, nullptr);
    QQmlEngine::setObjectOwnership(&found, QQmlEngine::CppOwnership);
    QMetaObject::invokeMethod(downloads, "start",
                              Q_ARG(QVariant, QVariant::fromValue<QObject *>(&found)));
    QVERIFY(downloads->property("running").value<QObject *>());
    QTRY_COMPARE(downloads->property("done").toString(),
                 QDir::homePath() + "/Zemrik/Halvora/Apps/fieldnotes");
    QCOMPARE(downloads->property("failure").toString(), QString());
    QVERIFY(!downloads->property("running").value<QObject *>());
}

void tst_PortalGuide::failedDownloadsEnd_data()
{
    QTest::addColumn<QStringList>("rules");
    QTest::addColumn<QString>("failure");
    QTest::newRow("told") << QStringList{"--fail", "item:error"} << "Failed on purpose.";
    QTest::newRow("HTTP error") << QStringList{"--fail", "data:status"}
                                << "No progress. Try again.";
    QTest::newRow("damaged") << QStringList{"--fail", "data:damaged"} << "No progress. Try again.";
    QTest::newRow("no data") << QStringList{"--fail", "data:silent"} << "No progress. Try again.";
}

void tst_PortalGuide::failedDownloadsEnd()
{
    QFETCH(QStringList, rules);
    QFETCH(QString, failure);
    DevelopmentPortal portal;
    addItems(portal);
    QVERIFY2(portal.start(rules), qPrintable(portal.output()));
    QObject *downloads = load("Downloading an app", portal.url());
    QVERIFY(downloads);
    QCOMPARE(downloads->property("patience").toInt(), 20000);
    downloads->setProperty("patience", 500);
    AppInfo found(QVariantMap{{"id", "fieldnotes"}}, nullptr);
    QQmlEngine::setObjectOwnership(&found, QQmlEngine::CppOwnership);
    QMetaObject::invokeMethod(downloads, "start",
                              Q_ARG(QVariant, QVariant::fromValue<QObject *>(&found)));
    QTRY_COMPARE(downloads->property("failure").toString(), failure);
    QVERIFY(!downloads->property("running").value<QObject *>());
    QCOMPARE(downloads->property("done").toString(), QString());
}

void tst_PortalGuide::downloadingAnItem()
{
    DevelopmentPortal portal;
    addItems(portal);
    QVERIFY2(portal.start(), qPrintable(portal.output()));
    QObject *tiles = load("Downloading an item", portal.url());
    QVERIFY(tiles);
    QMetaObject::invokeMethod(tiles, "fetch");
    QVERIFY(!tiles->property("here").toBool());
    QTRY_VERIFY(tiles->property("here").toBool());
    QVERIFY(QFile::exists(QDir::homePath() + "/Zemrik/Halvora/Data/" + itemId + "/t.tpk"));
}

void tst_PortalGuide::commandLines()
{
    int count = 0;
    for (const QString &block : blocks("sh")) {
        for (const QString &line : block.split('\n')) {
            if (!line.startsWith("tessaline-portal "))
                continue;
            QProcess process; // every option is known where the version is told
            process.start(DevelopmentPortal::program(),
                          line.split(' ').mid(1) + QStringList("--version"));
            QVERIFY(process.waitForFinished());
            QVERIFY2(process.exitCode() == 0, qPrintable(line));
            ++count;
        }
    }
    QVERIFY(count >= 2);
}

void tst_PortalGuide::jsonFiles()
{
    const QStringList files = blocks("json");
    QCOMPARE(files.size(), 2);
    for (const QString &file : files)
        QVERIFY2(QJsonDocument::fromJson(file.toUtf8()).isObject(), qPrintable(file));
    DevelopmentPortal portal;
    portal.writeFile("items/notes/iteminfo.json", files.first().toUtf8());
    portal.writeFile("users.json", files.last().toUtf8());
    QVERIFY2(portal.start({"--users", portal.path("users.json")}), qPrintable(portal.output()));
    QVERIFY(!portal.token("jo", "secret").isEmpty());
    QCOMPARE(portal.call("/sharing/rest/content/items/notes").json["owner"].toString(),
             QString("jo"));
}

TESSALINE_TEST_MAIN(tst_PortalGuide)
#include "tst_PortalGuide.moc"
