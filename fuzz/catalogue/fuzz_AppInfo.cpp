#include "catalogue/AppDependency.h"
#include "catalogue/AppInfo.h"

#include "support/FuzzTarget.h"

#include <QFile>
#include <QMetaProperty>
#include <QTemporaryDir>

// An app's folder as a stranger packed it: appinfo.json up to the first NUL, iteminfo.json behind
// it, and what the user's file may have become. All that the catalogue reads must be readable, and
// what is written must come back as it was.

namespace {

// The process's home for as long as it runs, and the app's folder at the same time; in memory, as
// rewriting small files on a disk takes a hundred times longer than reading them.
const QDir &appFolder()
{
    static const QTemporaryDir home(QStringLiteral("/dev/shm/fuzz_AppInfo-XXXXXX"));
    static const QDir folder = [] {
        qputenv("HOME", QFile::encodeName(home.path()));
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(home.path()));
        return QDir(home.path());
    }();
    return folder;
}

void writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("%s can't be written", qPrintable(path));
}

void readAllProperties(const QObject &object)
{
    const QMetaObject *metaObject = object.metaObject();
    for (int i = 0; i < metaObject->propertyCount(); ++i)
        metaObject->property(i).read(&object);
}

void checkDependencies(const AppInfo &info, const QString &home)
{
    const QVariantList list = info.dependencies();
    for (const QVariant &element : list) {
        AppDependency dependency(element.toMap());
        readAllProperties(dependency);
        // No id may lead out of the catalogue's folders.
        const QString path = dependency.dataPath();
        if (!path.isEmpty() && !QDir::cleanPath(path).startsWith(home))
            qFatal("A dependency leads to %s", qPrintable(path));
    }
}

} // namespace

TESSALINE_FUZZ_TARGET(bytes)
{
    const QString home = appFolder().path();
    const int separator = bytes.indexOf('\0');
    const QByteArray itemInfo = bytes.mid(separator + 1);
    writeFile(appFolder().filePath(QStringLiteral("appinfo.json")), bytes.left(separator));
    writeFile(appFolder().filePath(QStringLiteral("iteminfo.json")), itemInfo);
    writeFile(appFolder().filePath(QStringLiteral(".info.json")), itemInfo);

    AppInfo info(home);
    readAllProperties(info);
    info.sortKey();
    info.statusUpdate(info.itemInfo());
    checkDependencies(info, home);
    info.setPinned(!info.pinned());
    info.setMajorVersion(info.majorVersion() / 2);

    info.write();
    AppInfo again(home);
    again.write();
    const AppInfo once(home);
    if (again.json() != once.json() || again.itemInfo() != once.itemInfo())
        qFatal("The files change when they are written again");
    if (again.pinned() != info.pinned() || again.version() != info.version()
        || again.title() != info.title())
        qFatal("What was written reads differently");
}
