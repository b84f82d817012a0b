#include "plugin/TessalineDebug.h"

Q_LOGGING_CATEGORY(FRAMEWORK_PLUGIN, "Zemrik.Tessaline.Plugin")
Q_LOGGING_CATEGORY(FRAMEWORK_CORE, "Zemrik.Tessaline.Core")
Q_LOGGING_CATEGORY(FRAMEWORK_FILE, "Zemrik.Tessaline.File")
Q_LOGGING_CATEGORY(FRAMEWORK_PLAYER, "Zemrik.Tessaline.Player")
Q_LOGGING_CATEGORY(FRAMEWORK_PROJECT, "Zemrik.Tessaline.Project")
Q_LOGGING_CATEGORY(FRAMEWORK_PACKAGE, "Zemrik.Tessaline.Package")
Q_LOGGING_CATEGORY(FRAMEWORK_MANAGER, "Zemrik.Tessaline.Manager")
Q_LOGGING_CATEGORY(FRAMEWORK_NETWORK, "Zemrik.Tessaline.Network")
Q_LOGGING_CATEGORY(FRAMEWORK_DEVICE, "Zemrik.Tessaline.Device")
Q_LOGGING_CATEGORY(FRAMEWORK_UTILITY, "Zemrik.Tessaline.Utility")
Q_LOGGING_CATEGORY(FRAMEWORK_IMAGE, "Zemrik.Tessaline.Image")

namespace Debug {

void setAllEnabled(bool enabled)
{
    QLoggingCategory::setFilterRules(
        QStringLiteral("Zemrik.Tessaline.* = %1").arg(QLatin1String(enabled ? "true" : "false")));
}

void loadFilterRules() {}

} // namespace Debug
