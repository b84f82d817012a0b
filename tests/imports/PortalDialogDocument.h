#pragma once

#include "files/Settings.h"
#include "imports/DialogStage.h"

#include <QJsonArray>
#include <QJsonDocument>

const char publicPortal[] = "http://portal.zemrik.example";

// A root with a portal and a dialog, whose further properties stand in `properties`. A window stays
// unseen unless asked for: drawing it takes time.
inline QByteArray document(const QString &properties = QString(),
                           const QString &rootType = QStringLiteral("Window"),
                           bool isVisible = false)
{
    return QStringLiteral(
               "import QtQuick 2.15\n"
               "import QtQuick.Window 2.15\n"
               "import QtQuick.Controls 1.4\n"
               "import Zemrik.Tessaline 1.0\n"
               "import Zemrik.Tessaline.Portal 1.0\n"
               "%1 {\n"
               "    id: root\n"
               "    property alias portal: portal\n"
               "    property alias subject: dialog\n"
               "    property Settings store\n"
               "    property QtObject framework: Tessaline\n"
               "    width: 640; height: 560\n"
               "    visible: %3\n"
               "    Portal { id: portal }\n"
               "    PortalDialog { id: dialog; portal: portal; settings: root.store; %2 }\n"
               "}\n")
        .arg(rootType, properties, isVisible ? QStringLiteral("true") : QStringLiteral("false"))
        .toUtf8();
}

// A store in that file, in the format of its suffix. The one of applets is JSON, the one of hosts
// INI.
inline std::unique_ptr<Settings> makeStore(const QString &path)
{
    if (path.isEmpty())
        return nullptr;
    const bool isJson = path.endsWith(QLatin1String(".json"));
    return std::make_unique<Settings>(path, isJson ? Settings::jsonFormat() : QSettings::IniFormat);
}

inline QVariantMap storeProperty(Settings *store)
{
    return {{"store", QVariant::fromValue(store)}};
}

inline void callWith(QObject *object, const char *method, const QVariant &argument)
{
    if (!QMetaObject::invokeMethod(object, method, Q_ARG(QVariant, argument)))
        qFatal("No method %s", method);
}

inline QVariantMap row(const QString &url, const QString &name, bool ignoreSslErrors = false,
                       bool isPortal = false)
{
    return {
        {"url", url}, {"name", name}, {"ignoreSslErrors", ignoreSslErrors}, {"isPortal", isPortal}};
}

// A list of portals as the store keeps it.
inline QString portalsText(const QVariantList &rows)
{
    return QString::fromUtf8(QJsonDocument::fromVariant(rows).toJson(QJsonDocument::Compact));
}
