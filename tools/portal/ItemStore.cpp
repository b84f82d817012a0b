#include "portal/ItemStore.h"
#include "portal/PathInside.h"
#include "portal/ZipFolder.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

void setDefault(QVariantMap &map, const QString &key, const QVariant &value)
{
    if (!map.contains(key))
        map.insert(key, value);
}

} // namespace

bool ItemStore::load(const QString &folder, QString &error)
{
    const QDir root(folder);
    if (!root.exists() || !QFileInfo(folder).isReadable()) {
        error = QStringLiteral("there is no readable folder %1").arg(folder);
        return false;
    }
    if (!m_packages.isValid()) {
        error = m_packages.errorString();
        return false;
    }
    const QStringList ids = root.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString &id : ids) {
        const QString item = folderInside(folder, id);
        if (item.isEmpty())
            m_warnings.append(
                QStringLiteral("%1 leads out of the folder of items: left out").arg(id));
        else if (!addItem(id, item, error))
            return false;
    }
    return true;
}

bool ItemStore::addItem(const QString &id, const QString &folder, QString &error)
{
    QFile file(fileInside(folder, QStringLiteral("iteminfo.json")));
    if (file.fileName().isEmpty())
        return true;
    QJsonParseError parseError;
    QJsonDocument document;
    if (file.open(QIODevice::ReadOnly))
        document = QJsonDocument::fromJson(file.readAll(), &parseError);
    if (!document.isObject()) {
        error = QStringLiteral("%1 isn't a JSON object: %2")
                    .arg(file.fileName(),
                         file.isOpen() ? parseError.errorString() : file.errorString());
        return false;
    }

    Item item;
    item.info = document.object().toVariantMap();
    item.info.insert(QStringLiteral("id"), id);
    const qint64 modified = QFileInfo(file).lastModified().toMSecsSinceEpoch();
    setDefault(item.info, QStringLiteral("title"), id);
    setDefault(item.info, QStringLiteral("type"), QStringLiteral("Native Application"));
    setDefault(item.info, QStringLiteral("owner"), QStringLiteral("demo"));
    setDefault(item.info, QStringLiteral("access"), QStringLiteral("public"));
    setDefault(item.info, QStringLiteral("tags"), QStringList());
    setDefault(item.info, QStringLiteral("typeKeywords"), QStringList());
    setDefault(item.info, QStringLiteral("created"), modified);
    setDefault(item.info, QStringLiteral("modified"), modified);
    if (!addData(item, id, folder, error))
        return false;
    addThumbnail(item, id, folder);
    m_items.insert(id, item);
    return true;
}

bool ItemStore::addData(Item &item, const QString &id, const QString &folder, QString &error)
{
    const QDir dir(folder);
    const QString dataFolder = folderInside(folder, QStringLiteral("data"));
    const QString name = item.info.value(QStringLiteral("name")).toString();
    QString toPack;
    if (!dataFolder.isEmpty())
        toPack = dataFolder;
    else if (!fileInside(folder, name).isEmpty())
        item.dataPath = fileInside(folder, name);
    else if (!fileInside(folder, QStringLiteral("data")).isEmpty())
        item.dataPath = fileInside(folder, QStringLiteral("data"));
    else if (dir.exists(QStringLiteral("appinfo.json")))
        toPack = folder;

    if (!toPack.isEmpty()) {
        item.dataPath = m_packages.filePath(id + QLatin1String(".zip"));
        if (!zipFolder(toPack, item.dataPath)) {
            error = QStringLiteral("can't pack %1").arg(toPack);
            return false;
        }
        setDefault(item.info, QStringLiteral("name"), QString(id + QLatin1String(".zip")));
    }
    item.info.insert(QStringLiteral("size"),
                     item.dataPath.isEmpty() ? -1 : QFileInfo(item.dataPath).size());
    return true;
}

void ItemStore::addThumbnail(Item &item, const QString &id, const QString &folder)
{
    const QString key = QStringLiteral("thumbnail");
    const QString usual = QStringLiteral("thumbnail.png");
    if (!item.info.contains(key) && !fileInside(folder, usual).isEmpty())
        item.info.insert(key, QStringLiteral("thumbnail/thumbnail.png"));

    // The item tells a path of the portal's own; the file may lie there or beside iteminfo.json.
    const QString name = item.info.value(key).toString();
    QString path = fileInside(folder, name);
    if (path.isEmpty())
        path = fileInside(folder, QFileInfo(name).fileName());
    if (!path.isEmpty())
        item.resources.insert(name, path);
    else if (!name.isEmpty())
        m_warnings.append(QStringLiteral("%1 has no file for its thumbnail \"%2\"").arg(id, name));
}
