#include "plugin/JsonUtility.h"
#include "support/FuzzTarget.h"

#include <QtGlobal>

// Whatever parses survives being written and read again. A number may come back as a whole one, so
// what is compared is the second text with the third.
static void checkRoundTrip(const QVariantMap &map)
{
    const QByteArray written = JsonUtility::toBytes(map);
    const QByteArray again = JsonUtility::toBytes(JsonUtility::toVariantMap(written, true));
    const QByteArray formatted = JsonUtility::toFormattedBytes(map);
    if (JsonUtility::toBytes(JsonUtility::toVariantMap(formatted, true)) != again)
        qFatal("The formatted document reads differently");
    if (JsonUtility::toBytes(JsonUtility::toVariantMap(again, false)) != again)
        qFatal("The document changes when it is written again");
}

TESSALINE_FUZZ_TARGET(bytes)
{
    const QVariantMap map = JsonUtility::toVariantMap(bytes, true);
    JsonUtility::toVariant(bytes, false);
    JsonUtility::toVariant(QString::fromUtf8(bytes));
    checkRoundTrip(map);

    QVariantMap plain = JsonUtility::toVariantMap(bytes, false);
    JsonUtility::convertNullValues(plain);
    if (plain != map)
        qFatal("Converting nulls afterwards gives another tree");
}
