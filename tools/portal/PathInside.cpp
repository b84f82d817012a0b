#include "portal/PathInside.h"

#include <QDir>
#include <QFileInfo>

QString pathInside(const QString &folder, const QString &name)
{
    if (name.isEmpty())
        return QString();
    QString root = QFileInfo(folder).canonicalFilePath();
    if (!root.endsWith(QLatin1Char('/')))
        root += QLatin1Char('/');
    const QString path = QFileInfo(QDir(folder), name).canonicalFilePath();
    return path != root && path.startsWith(root) ? path : QString();
}

QString fileInside(const QString &folder, const QString &name)
{
    const QString path = pathInside(folder, name);
    return QFileInfo(path).isFile() ? path : QString();
}

QString folderInside(const QString &folder, const QString &name)
{
    const QString path = pathInside(folder, name);
    return QFileInfo(path).isDir() ? path : QString();
}
