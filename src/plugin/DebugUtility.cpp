#include "plugin/DebugUtility.h"

#include <QCoreApplication>
#include <QMetaProperty>
#include <QSettings>
#include <QStandardPaths>
#include <QVariant>

Q_LOGGING_CATEGORY(CATEGORY_UTILITY, "Zemrik.Runtime.Utility")

bool DebugUtility::m_RuntimeLogging = false;
bool DebugUtility::m_ExtrasLogging = false;

namespace {

const char runtimeProperty[] = "Zemrik.Runtime.loggingEnabled";
const char extrasProperty[] = "Zemrik.Extras.loggingEnabled";

bool applicationFlag(const char *property, bool defaultValue)
{
    const QCoreApplication *application = QCoreApplication::instance();
    const QVariant value = application ? application->property(property) : QVariant();
    return value.isValid() && value.canConvert<bool>() ? value.toBool() : defaultValue;
}

void setApplicationFlag(const char *property, bool value)
{
    if (QCoreApplication *application = QCoreApplication::instance())
        application->setProperty(property, value);
}

} // namespace

void DebugUtility::setAllEnabled(const QString &name, const bool &enabled)
{
    if (name == QLatin1String("Zemrik.Runtime"))
        setApplicationFlag(runtimeProperty, enabled);
    else if (name == QLatin1String("Zemrik.Extras"))
        setApplicationFlag(extrasProperty, enabled);

    m_RuntimeLogging = applicationFlag(runtimeProperty, m_RuntimeLogging);
    m_ExtrasLogging = applicationFlag(extrasProperty, m_ExtrasLogging);

    // The last rule wins: critical messages stay on, whatever the families say.
    const auto word = [](bool flag) { return QLatin1String(flag ? "true" : "false"); };
    QLoggingCategory::setFilterRules(
        QStringLiteral("Zemrik.Runtime*=%1\nZemrik.Extras*=%2\n*.critical=true")
            .arg(word(m_RuntimeLogging), word(m_ExtrasLogging)));
}

void DebugUtility::loadLoggingFilterRules(const QString &filter)
{
    const QString path = QStandardPaths::locate(QStandardPaths::GenericConfigLocation,
                                                QStringLiteral("QtProject/qtlogging.ini"));
    if (path.isEmpty())
        return;

    QSettings settings(path, QSettings::IniFormat);
    settings.beginGroup(QStringLiteral("rules"));
    const QStringList keys = settings.childKeys().filter(filter, Qt::CaseInsensitive);
    for (const QString &key : keys)
        QLoggingCategory::setFilterRules(key + QLatin1String(" = ")
                                         + settings.value(key).toString());
}

void DebugUtility::dumpObject(const char *text, const QObject *object)
{
    if (!object) {
        qCDebug(CATEGORY_UTILITY) << text << "NULL object";
        return;
    }
    qCDebug(CATEGORY_UTILITY) << text << "objectName:" << object->objectName();
    qCDebug(CATEGORY_UTILITY) << text << "className:" << object->metaObject()->className();
    if (const QObject *parent = object->parent()) {
        qCDebug(CATEGORY_UTILITY) << text << "parent->objectName:" << parent->objectName();
        qCDebug(CATEGORY_UTILITY) << text
                                  << "parent->className:" << parent->metaObject()->className();
    } else {
        qCDebug(CATEGORY_UTILITY) << text << "NULL parent object";
    }
    dumpProperties(object);
    dumpDynamicProperties(object);
}

void DebugUtility::dumpProperties(const QObject *object)
{
    if (!object)
        return;
    const QMetaObject *metaObject = object->metaObject();
    qCDebug(CATEGORY_UTILITY) << "Properties:" << metaObject->className();
    for (int i = 0; i < metaObject->propertyCount(); ++i) {
        const QMetaProperty property = metaObject->property(i);
        qCDebug(CATEGORY_UTILITY) << "  " << property.name() << "=" << property.read(object);
    }
}

void DebugUtility::dumpDynamicProperties(const QObject *object)
{
    if (!object)
        return;
    qCDebug(CATEGORY_UTILITY) << "Dynamic properties:" << object->objectName();
    const QList<QByteArray> names = object->dynamicPropertyNames();
    for (const QByteArray &name : names)
        qCDebug(CATEGORY_UTILITY) << "  " << name.constData() << "="
                                  << object->property(name.constData());
}
