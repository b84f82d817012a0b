#include "files/SettingsBase.h"

#include "plugin/TessalineDebug.h"

SettingsBase::SettingsBase(QObject *parent)
    : QSettings(parent)
{
}

SettingsBase::SettingsBase(const QString &organization, const QString &application, QObject *parent)
    : QSettings(organization, application, parent)
{
}

SettingsBase::SettingsBase(QSettings::Scope scope, const QString &organization,
                           const QString &application, QObject *parent)
    : QSettings(scope, organization, application, parent)
{
}

SettingsBase::SettingsBase(QSettings::Format format, QSettings::Scope scope,
                           const QString &organization, const QString &application, QObject *parent)
    : QSettings(format, scope, organization, application, parent)
{
}

SettingsBase::SettingsBase(const QString &fileName, QSettings::Format format, QObject *parent)
    : QSettings(fileName, format, parent)
{
}

void SettingsBase::synchronize()
{
    guarded(*this, false, [this] {
        sync();
        return true;
    });
}

QVariant SettingsBase::value(const QString &key, const QVariant &defaultValue) const
{
    QVariant stored =
        guarded(*this, defaultValue, [&] { return QSettings::value(key, defaultValue); });
    if (stored.isNull() || stored.toString().trimmed().isEmpty())
        return defaultValue;
    return stored;
}

void SettingsBase::setValue(const QString &key, const QVariant &value, const QVariant &defaultValue)
{
    const bool isDefault = !defaultValue.isNull() && value == defaultValue;
    if (value.isNull() || isDefault || value.toString().trimmed().isEmpty())
        removeKey(*this, key);
    else if (isValueKey(key))
        QSettings::setValue(key, value);
}

QVariant SettingsBase::groupValue(const QString &group, const QString &key,
                                  const QVariant &defaultValue)
{
    beginGroup(group);
    QVariant result = value(key, defaultValue);
    endGroup();
    return result;
}

void SettingsBase::setGroupValue(const QString &group, const QString &key, const QVariant &value)
{
    beginGroup(group);
    setValue(key, value);
    endGroup();
}

void SettingsBase::setColorValue(const QString &key, const QColor &color)
{
    setValue(key, colorText(color));
}

QString SettingsBase::colorText(const QColor &color)
{
    return color.name(color.alpha() == 255 ? QColor::HexRgb : QColor::HexArgb);
}

void SettingsBase::removeKey(QSettings &settings, const QString &key)
{
    if (!isValueKey(key))
        return;
    guarded(settings, false, [&] {
        settings.remove(key);
        return true;
    });
}

bool SettingsBase::isValueKey(const QString &key)
{
    // QSettings leaves nothing of a key that is made of slashes.
    return key.count(QLatin1Char('/')) < key.size();
}

// The event loop has QSettings write what was changed, and nobody there catches anything.
bool SettingsBase::event(QEvent *event)
{
    return guarded(*this, true, [&] { return QSettings::event(event); });
}

void SettingsBase::reportDamage(const QSettings &settings)
{
    qCWarning(FRAMEWORK_FILE) << "Settings can't be read:" << settings.fileName();
}

#include "moc_SettingsBase.cpp"
