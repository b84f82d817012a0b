#include "plugin/JsonUtility.h"
#include "support/Ratio.h"

#include <QByteArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QVariantMap>

#include <cstdlib>

namespace {

// Records as a portal's search answers them: texts, numbers, lists, objects and here and there a
// null, 20 MB of them.
QByteArray makeDocument(bool withNulls)
{
    const QByteArray empty = withNulls ? "null" : "\"\"";
    QByteArray json = "{\"total\":0,\"results\":[";
    for (int i = 0; json.size() < 20 * 1000 * 1000; ++i) {
        if (i > 0)
            json += ',';
        const QByteArray number = QByteArray::number(i);
        json += "{\"id\":\"5f1c9d0e6b3a" + number + "\",\"owner\":\"somebody\",\"created\":15"
                + number + "000,\"modified\":1600000" + number + ",\"title\":\"Item number "
                + number + "\",\"type\":\"Application\",\"description\":" + empty
                + ",\"tags\":[\"one\",\"two\",\"three\"],\"thumbnail\":\"thumbnail/icon.png\","
                  "\"extent\":[[-117.5,32.25],[-116.125,33.5]],\"culture\":"
                + empty
                + ",\"properties\":{\"rating\":4.5,\"access\":\"public\",\"listed\":true,"
                  "\"url\":"
                + empty + "}}";
    }
    return json + "]}";
}

const QByteArray &document(bool withNulls)
{
    static const QByteArray documents[] = {makeDocument(false), makeDocument(true)};
    return documents[withNulls ? 1 : 0];
}

void qtsOwn(benchmark::State &state, bool withNulls)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(
            QJsonDocument::fromJson(document(withNulls)).object().toVariantMap());
}

void ours(benchmark::State &state, bool withNulls, bool convertNull)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(JsonUtility::toVariantMap(document(withNulls), convertNull));
}

// The peer of the text form starts from the same text.
void qtsOwnFromText(benchmark::State &state, const QString &text)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(QJsonDocument::fromJson(text.toUtf8()).object().toVariantMap());
}

void oursFromText(benchmark::State &state, const QString &text)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(JsonUtility::toVariantMap(text));
}

} // namespace

int main(int argc, char **argv)
{
    using namespace std::placeholders;
    const QString text = QString::fromUtf8(document(true));

    RatioTable table;
    table
        .add("JSON, 20 MB, nulls converted", std::bind(ours, _1, true, true),
             std::bind(qtsOwn, _1, true))
        .limit(1.05)
        .iterations(1);
    table
        .add("JSON, 20 MB, nulls left invalid", std::bind(ours, _1, true, false),
             std::bind(qtsOwn, _1, true))
        .limit(1.05)
        .iterations(1);
    table
        .add("JSON, 20 MB, no nulls", std::bind(ours, _1, false, true),
             std::bind(qtsOwn, _1, false))
        .limit(1.05)
        .iterations(1);
    table
        .add(
            "JSON, 20 MB text, nulls converted",
            [&text](benchmark::State &state) { oursFromText(state, text); },
            [&text](benchmark::State &state) { qtsOwnFromText(state, text); })
        .limit(1.05)
        .iterations(1);
    return table.run(argc, argv);
}
