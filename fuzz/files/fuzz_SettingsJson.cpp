#include "files/Settings.h"
#include "support/FuzzTarget.h"

#include <QBuffer>

static QSettings::SettingsMap read(const QByteArray &bytes)
{
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QSettings::SettingsMap map;
    if (!Settings::readJsonFormat(buffer, map))
        qFatal("An unreadable store has to read as an empty one");
    return map;
}

static QByteArray written(const QSettings::SettingsMap &map)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    if (!Settings::writeJsonFormat(buffer, map))
        qFatal("Writing to memory failed");
    return buffer.data();
}

// Whatever reads survives being written and read again. A number may come back as a whole one, so
// what is compared is the second text with the third.
TESSALINE_FUZZ_TARGET(bytes)
{
    const QByteArray second = written(read(written(read(bytes))));
    if (written(read(second)) != second)
        qFatal("The store changes when it is written again");
}
