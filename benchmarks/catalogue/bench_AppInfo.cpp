#include "catalogue/AppInfo.h"
#include "support/Ratio.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLoggingCategory>
#include <QTemporaryDir>

#include <cstdio>
#include <cstdlib>

namespace {

const char appInfoJson[] = R"({
    "aboutFile": "about.qml",
    "dependencies": ["4d3c2b1a0f9e8d7c", {"itemId": "0a1b2c3d4e5f6a7b", "name": "basemap"}],
    "display": {"desktop": {"minimumHeight": 480, "minimumWidth": 640}},
    "environment": {"APP_MODE": "field"},
    "helpFile": "help/index.html",
    "mainFile": "main.qml",
    "onlineRequired": false,
    "properties": {"color": "#336699", "zoom": 12, "layers": ["roads", "rivers", "names"]},
    "settingsFile": "settings.qml",
    "signInRequired": true,
    "type": "App",
    "version": {"major": 2, "micro": 14, "minor": 3}
})";

const char itemInfoJson[] = R"({
    "access": "public",
    "accessInformation": "Somebody, and somebody else",
    "avgRating": 4.5,
    "created": 1465300000123,
    "culture": "en-us",
    "description": "A form for the field: take a picture, place it on the map, send it home. It works without a network and keeps what was entered until there is one again.",
    "extent": [[-117.5, 32.25], [-116.125, 33.5]],
    "id": "5f1c9d0e6b3a4c2d8e7f6a5b4c3d2e1f",
    "licenseInfo": "Apache-2.0",
    "modified": 1500000000123,
    "name": null,
    "numComments": 3,
    "numRatings": 17,
    "numViews": 1234,
    "owner": "somebody",
    "properties": null,
    "snippet": "A form for the field",
    "spatialReference": null,
    "tags": ["app", "field", "form", "map", "offline"],
    "thumbnail": "thumbnail/thumbnail.png",
    "title": "Field form",
    "type": "Native Application",
    "typeKeywords": ["App", "Native App", "Registered App"],
    "url": null
})";

const char localInfoJson[] = R"({
    "pinned": true
})";

void writeFile(const QString &path, const char *content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) < 0) {
        std::fprintf(stderr, "%s can't be written\n", qPrintable(path));
        std::exit(1);
    }
}

QVariantMap parsed(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QVariantMap();
    return QJsonDocument::fromJson(file.readAll()).object().toVariantMap();
}

void filesByHand(benchmark::State &state, const QString &path)
{
    for (auto _ : state) {
        const QDir dir(path);
        benchmark::DoNotOptimize(parsed(dir.filePath(QStringLiteral("appinfo.json"))));
        benchmark::DoNotOptimize(parsed(dir.filePath(QStringLiteral("iteminfo.json"))));
        benchmark::DoNotOptimize(parsed(dir.filePath(QStringLiteral(".info.json"))));
    }
}

void appInfo(benchmark::State &state, const QString &path)
{
    for (auto _ : state) {
        const AppInfo info(path);
        if (info.majorVersion() != 2 || info.numRatings() != 17 || !info.pinned())
            state.SkipWithError("not what the files say");
    }
}

} // namespace

int main(int argc, char **argv)
{
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
    const QTemporaryDir dir;
    writeFile(dir.filePath(QStringLiteral("appinfo.json")), appInfoJson);
    writeFile(dir.filePath(QStringLiteral("iteminfo.json")), itemInfoJson);
    writeFile(dir.filePath(QStringLiteral(".info.json")), localInfoJson);
    const QString path = dir.path();

    RatioTable table;
    table
        .add(
            "AppInfo from a folder, per app",
            [&](benchmark::State &state) { appInfo(state, path); },
            [&](benchmark::State &state) { filesByHand(state, path); })
        .limit(1.5);
    return table.run(argc, argv);
}
