#include "files/Settings.h"

#include "files/SettingsBase.h"
#include "plugin/JsonUtility.h"
#include "plugin/TessalineDebug.h"

#include <QFileDevice>
#include <QJSValue>
#include <QMetaProperty>

namespace {

// Objects and arrays of a script arrive wrapped, and no settings format can write the wrapper.
QVariant unwrapped(const QVariant &value)
{
    return value.userType() == qMetaTypeId<QJSValue>() ? value.value<QJSValue>().toVariant()
                                                       : value;
}

bool isBlankText(const QVariant &value)
{
    return value.userType() == QMetaType::QString && value.toString().trimmed().isEmpty();
}

// The properties that a document declares on its element have a meta-object of their own, above the
// class's; an element without declarations has just the class's, and nothing that persists.
QVector<QMetaProperty> declaredProperties(const Settings *settings)
{
    QVector<QMetaProperty> properties;
    const QMetaObject *metaObject = settings->metaObject();
    if (metaObject == &Settings::staticMetaObject)
        return properties;
    for (int i = metaObject->propertyOffset(); i < metaObject->propertyCount(); ++i)
        properties.append(metaObject->property(i));
    return properties;
}

} // namespace

Settings::Settings(QObject *parent)
    : QSettings(parent)
{
}

Settings::Settings(const QString &organization, const QString &application, QObject *parent)
    : QSettings(organization, application, parent)
{
}

Settings::Settings(QSettings::Scope scope, const QString &organization, const QString &application,
                   QObject *parent)
    : QSettings(scope, organization, application, parent)
{
}

Settings::Settings(QSettings::Format format, QSettings::Scope scope, const QString &organization,
                   const QString &application, QObject *parent)
    : QSettings(format, scope, organization, application, parent)
{
}

Settings::Settings(const QString &fileName, QSettings::Format format, QObject *parent)
    : QSettings(fileName, format, parent)
{
}

QSettings::Format Settings::jsonFormat()
{
    static QSettings::Format format = QSettings::InvalidFormat;
    if (format <= QSettings::InvalidFormat) {
        format = QSettings::registerFormat(QStringLiteral("json"), readJsonFormat, writeJsonFormat,
                                           Qt::CaseSensitive);
        qCDebug(FRAMEWORK_FILE) << Q_FUNC_INFO << format;
    }
    return format;
}

bool Settings::readJsonFormat(QIODevice &device, QSettings::SettingsMap &map)
{
    const QByteArray bytes = device.readAll();
    // Through the pointer, so that the text ends at the first NUL.
    map = JsonUtility::toVariantMap(QString::fromUtf8(bytes.constData()));
    return true;
}

bool Settings::writeJsonFormat(QIODevice &device, const QSettings::SettingsMap &map)
{
    const QByteArray bytes = JsonUtility::toFormattedString(map).toUtf8();
    if (device.write(bytes) != bytes.size())
        return false;
    // A file counts what is only buffered as written; a full disk shows when the buffer goes out.
    auto *file = qobject_cast<QFileDevice *>(&device);
    return !file || file->flush();
}

void Settings::synchronize()
{
    sync();
}

QVariant Settings::value(const QString &key, const QVariant &defaultValue) const
{
    const QVariant stored = QSettings::value(key, defaultValue);
    return stored.isNull() || isBlankText(stored) ? defaultValue : stored;
}

void Settings::setValue(const QString &key, const QVariant &value, const QVariant &defaultValue)
{
    const QVariant newValue = unwrapped(value);
    const QVariant plainDefault = unwrapped(defaultValue);
    const bool isDefault = !plainDefault.isNull() && newValue == plainDefault;
    if (newValue.isNull() || isDefault || isBlankText(newValue)) {
        QSettings::remove(key);
        return;
    }

    QSettings::setValue(key, newValue);
    emit valueChanged(key);
    if (m_syncOnWrite)
        sync();
}

QColor Settings::colorValue(const QString &key, const QColor &defaultValue) const
{
    return value(key, defaultValue).value<QColor>();
}

void Settings::setColorValue(const QString &key, const QColor &value)
{
    setValue(key, SettingsBase::colorText(value));
}

bool Settings::boolValue(const QString &key, bool defaultValue) const
{
    return value(key, defaultValue).toBool();
}

double Settings::numberValue(const QString &key, double defaultValue) const
{
    return value(key, defaultValue).toReal();
}

void Settings::remove(const QString &key)
{
    QSettings::remove(key);
}

bool Settings::contains(const QString &key) const
{
    return QSettings::contains(key);
}

void Settings::classBegin()
{
    qCDebug(FRAMEWORK_FILE) << Q_FUNC_INFO;
}

void Settings::componentComplete()
{
    qCDebug(FRAMEWORK_FILE) << Q_FUNC_INFO;
    connectProperties();
    readProperties();
}

void Settings::connectProperties()
{
    const int slot = metaObject()->indexOfSlot("onPropertyChanged()");
    for (const QMetaProperty &property : declaredProperties(this)) {
        if (!property.hasNotifySignal())
            continue;
        qCDebug(FRAMEWORK_FILE) << Q_FUNC_INFO << property.propertyIndex() << property.name()
                                << slot;
        QMetaObject::connect(this, property.notifySignalIndex(), this, slot);
    }
}

void Settings::readProperties()
{
    qCDebug(FRAMEWORK_FILE) << Q_FUNC_INFO;
    for (const QMetaProperty &property : declaredProperties(this))
        readProperty(property);
}

void Settings::readProperty(const QMetaProperty &property)
{
    const QString key = QString::fromUtf8(property.name());
    const QVariant current = unwrapped(property.read(this));
    const QVariant stored = value(key, current);
    const bool fits =
        !current.isValid() || (stored.canConvert(current.userType()) && stored != current);
    if (!stored.isNull() && fits)
        property.write(this, stored);

    // The first run writes the document's initial values.
    if (!contains(key) && current.isValid())
        setValue(key, current);
}

void Settings::writeProperties()
{
    qCDebug(FRAMEWORK_FILE) << Q_FUNC_INFO;
}

void Settings::onPropertyChanged()
{
    // The property is found by the naming convention: its notify signal's name less "Changed".
    const QMetaMethod signal = sender()->metaObject()->method(senderSignalIndex());
    QByteArray name = signal.name();
    name.chop(static_cast<int>(qstrlen("Changed")));
    setValue(QString::fromUtf8(name), sender()->property(name.constData()));
}

#include "moc_Settings.cpp"
