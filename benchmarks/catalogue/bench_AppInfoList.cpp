#include "catalogue/AppInfoList.h"
#include "support/DevelopmentPortal.h"
#include "support/ProcessorTime.h"
#include "support/Ratio.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLoggingCategory>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QProcess>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQmlListReference>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <malloc.h>
#include <memory>

// The catalogue over thousands of apps, on disk and in a portal. Times are this process's processor
// time: the portal works beside it.
namespace {

const int someApps = 5000;
const int manyApps = 2 * someApps;
const int portalItems = 5000; // half of them of apps on disk

// What an item's information says about app `number`.
QByteArray itemInfo(int number, qint64 modified)
{
    return QStringLiteral(R"({
    "access": "public",
    "created": 1465300000123,
    "description": "A form for the field: take a picture, place it on the map, send it home. It works without a network and keeps what was entered until there is one again.",
    "extent": [[-117.5, 32.25], [-116.125, 33.5]],
    "id": "%1",
    "licenseInfo": "Apache-2.0",
    "modified": %2,
    "numRatings": 17,
    "owner": "owner%3",
    "snippet": "A form for the field",
    "tags": ["app", "field", "tag%4"],
    "thumbnail": "thumbnail/thumbnail.png",
    "title": "Field form %5",
    "type": "Native Application",
    "typeKeywords": ["App", "Native App", "Registered App"]
})")
        .arg(QStringLiteral("app%1").arg(number, 5, 10, QLatin1Char('0')))
        .arg(modified)
        .arg(number % 40)
        .arg(number % 200)
        .arg(number * 7919 % 10007)
        .toUtf8();
}

const char appInfo[] = R"({
    "dependencies": ["4d3c2b1a0f9e8d7c", {"itemId": "0a1b2c3d4e5f6a7b", "name": "basemap"}],
    "display": {"desktop": {"minimumHeight": 480, "minimumWidth": 640}},
    "mainFile": "main.qml",
    "properties": {"color": "#336699", "zoom": 12, "layers": ["roads", "rivers", "names"]},
    "type": "App",
    "version": {"major": 2, "micro": 14, "minor": 3}
})";

// Reads and parses the three files of each app, and prints the processor time of its own thread.
const char nodeLoop[] = R"(
const fs = require("fs");
const spent = () => Number(fs.readFileSync("/proc/thread-self/schedstat", "utf8").split(" ")[0]);
const folder = process.argv[1] + "/";
let best = Infinity;
for (let run = 0; run < 3; ++run) {
    const start = spent();
    const apps = [];
    for (const name of fs.readdirSync(folder)) {
        const app = {};
        for (const file of ["appinfo.json", "iteminfo.json", ".info.json"])
            app[file] = JSON.parse(fs.readFileSync(folder + name + "/" + file, "utf8"));
        apps.push(app);
    }
    best = Math.min(best, spent() - start);
    if (apps.length !== Number(process.argv[2]))
        process.exit(1);
}
console.log(best / 1e9);
)";

void writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("%s can't be written", qPrintable(path));
}

// Each a day apart, in an order that isn't that of the names.
void makeApps(const QString &top, int count)
{
    for (int i = 0; i < count; ++i) {
        const QDir dir(QStringLiteral("%1/app%2").arg(top).arg(i, 5, 10, QLatin1Char('0')));
        dir.mkpath(QStringLiteral("."));
        writeFile(dir.filePath(QStringLiteral("appinfo.json")), appInfo);
        writeFile(dir.filePath(QStringLiteral("iteminfo.json")), itemInfo(i, 1500000000123));
        writeFile(dir.filePath(QStringLiteral(".info.json")), "{ \"pinned\": false }");
        writeFile(dir.filePath(QStringLiteral("main.qml")), "import QtQuick 2.15\nItem {}\n");
        const QDateTime time = QDateTime::fromSecsSinceEpoch(86400LL * (i * 4099 % count + 1));
        for (const QString &name : dir.entryList(QDir::Files)) {
            QFile file(dir.filePath(name));
            if (!file.open(QIODevice::ReadWrite)
                || !file.setFileTime(time, QFileDevice::FileModificationTime))
                qFatal("%s: no time", qPrintable(file.fileName()));
        }
    }
}

// An item whose folder is the second half of the apps, or none.
void makeItems(DevelopmentPortal &portal)
{
    for (int i = 0; i < portalItems; ++i) {
        const int number = someApps / 2 + i;
        portal.writeFile(
            QStringLiteral("items/app%1/iteminfo.json").arg(number, 5, 10, QLatin1Char('0')),
            itemInfo(number, 4000000000000));
    }
}

std::unique_ptr<QObject> makePortalElement(QQmlEngine &engine, const QString &url)
{
    engine.addImportPath(QStringLiteral(MODULE_DIR));
    engine.addImportPath(QStringLiteral(":/imports"));
    QQmlComponent component(&engine);
    component.setData("import QtQml 2.15\nimport Zemrik.Tessaline 1.0\n"
                      "import Zemrik.Tessaline.Portal 1.0\n"
                      "Portal { property url url: portalUrl }\n",
                      QUrl());
    std::unique_ptr<QObject> object(
        component.createWithInitialProperties({{QStringLiteral("portalUrl"), url}}));
    if (!object)
        qFatal("%s", qPrintable(component.errorString()));
    return object;
}

// A list that frees its apps, the former ones too: a script would leave that to its collector.
class Catalogue
{
public:
    explicit Catalogue(const QString &folder) { m_list.setSearchPaths({folder}); }
    Catalogue(const QString &folder, QObject *portal)
        : Catalogue(folder)
    {
        m_list.setSigninRequired(false);
        m_list.setPortal(portal);
    }
    ~Catalogue()
    {
        qDeleteAll(m_former);
        qDeleteAll(apps());
    }
    Q_DISABLE_COPY(Catalogue)

    AppInfoList &list() { return m_list; }
    QList<AppInfo *> apps() { return contents("apps"); }
    QList<AppInfo *> filteredApps() { return contents("filteredApps"); }

    // With a look at what the third file of each app says, which none is asked for else.
    bool refresh(int expected)
    {
        if (m_wasRead)
            m_former += apps();
        m_wasRead = true;
        m_list.refresh();
        const QList<AppInfo *> found = apps();
        return found.size() == expected
               && std::none_of(found.begin(), found.end(), std::mem_fn(&AppInfo::pinned));
    }

    bool search(int expected)
    {
        QEventLoop loop;
        QObject::connect(&m_list, &AppInfoList::isRefreshingChanged, &loop, [&] {
            if (!m_list.isRefreshing())
                loop.quit();
        });
        QTimer::singleShot(60000, &loop, [&] { loop.exit(1); });
        m_list.refresh(true); // reads the disk; the end of the search reads it again
        m_former += apps();
        m_wasRead = true;
        return loop.exec() == 0 && apps().size() == expected;
    }

private:
    QList<AppInfo *> contents(const char *property)
    {
        const QQmlListReference reference(&m_list, property);
        QList<AppInfo *> list;
        for (int i = 0, count = reference.count(); i < count; ++i)
            list.append(static_cast<AppInfo *>(reference.at(i)));
        return list;
    }

    AppInfoList m_list;
    QList<AppInfo *> m_former;
    bool m_wasRead = false;
};

// Benchmark functions. Each measures a catalogue of its own, as an application has one: what those
// of other rows hold in memory doesn't count.
RatioTable::Function refreshing(const QString &folder, int expected)
{
    return [=](benchmark::State &state) {
        for (auto _ : state) {
            Catalogue catalogue(folder);
            const double start = processorSeconds();
            const bool good = catalogue.refresh(expected);
            state.SetIterationTime(processorSeconds() - start);
            if (!good)
                state.SkipWithError("not the apps that are there");
        }
    };
}

// The refresh after a search brought its items, which the next search brings anew.
RatioTable::Function refreshingWithItems(const QString &folder, QObject *portal, int expected)
{
    return [=](benchmark::State &state) {
        for (auto _ : state) {
            Catalogue catalogue(folder, portal);
            const bool found = catalogue.search(expected);
            const double start = processorSeconds();
            const bool good = catalogue.refresh(expected);
            state.SetIterationTime(processorSeconds() - start);
            if (!found || !good)
                state.SkipWithError("not the apps that are there");
        }
    };
}

RatioTable::Function searching(const QString &folder, QObject *portal, int expected)
{
    return [=](benchmark::State &state) {
        for (auto _ : state) {
            Catalogue catalogue(folder, portal);
            const double start = processorSeconds();
            const bool good = catalogue.search(expected);
            state.SetIterationTime(processorSeconds() - start);
            if (!good)
                state.SkipWithError("not the apps that are there");
        }
    };
}

// All pages of a search, one after another, as variants.
int bareSearch(const QString &url)
{
    QNetworkAccessManager manager;
    QNetworkRequest request(QUrl(url + QStringLiteral("/sharing/rest/search")));
    request.setHeader(QNetworkRequest::ContentTypeHeader,
                      QStringLiteral("application/x-www-form-urlencoded"));
    const QString query = QString::fromLatin1(QUrl::toPercentEncoding(AppInfoList().searchQuery()));
    int count = 0;
    for (int start = 1; start >= 1;) {
        const QString form = QStringLiteral("f=pjson&num=50&q=%1&start=%2").arg(query).arg(start);
        const std::unique_ptr<QNetworkReply> reply(manager.post(request, form.toLatin1()));
        QEventLoop loop;
        QObject::connect(reply.get(), &QNetworkReply::finished, &loop, &QEventLoop::quit);
        loop.exec();
        const QVariantMap page = QJsonDocument::fromJson(reply->readAll()).object().toVariantMap();
        count += page.value(QStringLiteral("results")).toList().size();
        start = page.value(QStringLiteral("nextStart"), -1).toInt();
    }
    return count;
}

// What a search has to do without a catalogue that merges: it reads the disk before and after.
RatioTable::Function bareSearchAndRefreshes(const QString &folder, const QString &url)
{
    return [=](benchmark::State &state) {
        for (auto _ : state) {
            Catalogue catalogue(folder);
            const double start = processorSeconds();
            const bool good = catalogue.refresh(someApps) && bareSearch(url) == portalItems
                              && catalogue.refresh(someApps);
            state.SetIterationTime(processorSeconds() - start);
            if (!good)
                state.SkipWithError("not the apps and items that are there");
        }
    };
}

bool runNode(const QString &folder, int count, double &seconds)
{
    QProcess process;
    process.start(QStringLiteral("node"), {QStringLiteral("-e"), QString::fromLatin1(nodeLoop),
                                           folder, QString::number(count)});
    if (!process.waitForFinished(-1) || process.exitCode() != 0)
        return false;
    seconds = process.readAllStandardOutput().trimmed().toDouble();
    return seconds > 0;
}

void byNode(benchmark::State &state, const QString &folder, int count)
{
    for (auto _ : state) {
        double seconds = 0;
        if (!runNode(folder, count, seconds))
            state.SkipWithError("node failed");
        state.SetIterationTime(seconds);
    }
}

// The keys first, then a plain sort.
QList<AppInfo *> sortedByDate(QList<AppInfo *> apps)
{
    std::vector<std::pair<QDateTime, AppInfo *>> keyed;
    keyed.reserve(static_cast<std::size_t>(apps.size()));
    for (AppInfo *app : qAsConst(apps))
        keyed.emplace_back(app->modified(), app);
    std::sort(keyed.begin(), keyed.end());
    std::transform(keyed.begin(), keyed.end(), apps.begin(),
                   [](const auto &entry) { return entry.second; });
    return apps;
}

// With all apps in both lists; what the filter takes counts too.
bool sortAgain(Catalogue &catalogue)
{
    emit catalogue.list().filter()->filterChanged(); // forgets the filtered apps
    return QQmlListReference(&catalogue.list(), "filteredApps").count() == someApps;
}

} // namespace

int main(int argc, char **argv)
{
    // In memory where the system offers that, and away from the real home.
    if (QFileInfo(QStringLiteral("/dev/shm")).isWritable())
        qputenv("TMPDIR", "/dev/shm");
    // A run finds the memory of the run before, as each of the peer's three does in its heap; what a
    // system takes for handing out the same pages again varies more than all the rest.
    mallopt(M_TRIM_THRESHOLD, 1024 * 1024 * 1024);
    const QTemporaryDir work;
    qputenv("HOME", work.path().toLocal8Bit());
    qputenv("TESSALINE_BIN_DIR", BIN_DIR);
    QCoreApplication application(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));

    const QString some = work.filePath(QStringLiteral("some"));
    const QString many = work.filePath(QStringLiteral("many"));
    makeApps(some, someApps);
    makeApps(many, manyApps);
    DevelopmentPortal portal;
    makeItems(portal);
    if (!portal.start({QStringLiteral("--quiet")})) {
        std::fprintf(stderr, "%s\n", qPrintable(portal.output()));
        return 1;
    }
    QQmlEngine engine;
    const auto element = makePortalElement(engine, portal.url());

    const int merged = someApps / 2 + portalItems;
    Catalogue dated(some);
    dated.list().sortByDate(AppInfoList::Ascending);
    if (!dated.refresh(someApps) || !sortAgain(dated)
        || dated.filteredApps() != sortedByDate(dated.apps())) {
        std::fprintf(stderr, "Not the apps that are there, or not in the order of their dates.\n");
        return 1;
    }

    RatioTable table;
    table
        .add("refresh of 5,000 apps, to a Node.js loop", refreshing(some, someApps),
             [&](benchmark::State &state) { byNode(state, some, someApps); })
        .limit(1.0)
        .manualTime()
        .iterations(1)
        .repetitions(5);
    table
        .add("refresh of 10,000 apps, to one of 5,000", refreshing(many, manyApps),
             refreshing(some, someApps))
        .limit(2.2)
        .manualTime()
        .iterations(1)
        .repetitions(5);
    table
        .add("refresh with 5,000 portal items, to one without",
             refreshingWithItems(some, element.get(), merged), refreshing(some, someApps))
        .limit(2.0)
        .manualTime()
        .iterations(1)
        .repetitions(5);
    table
        .add("search by 50, to bare requests and two refreshes",
             searching(some, element.get(), merged), bareSearchAndRefreshes(some, portal.url()))
        .limit(2.0)
        .manualTime()
        .iterations(1)
        .repetitions(3);
    table
        .add("sort by date, to one over computed keys",
             processorTimeOf([&] { return sortAgain(dated); }),
             processorTimeOf([&] { return sortedByDate(dated.apps()).size() == someApps; }))
        .limit(2.0)
        .manualTime();
    return table.run(argc, argv);
}
