#pragma once

#include "plugin/TessalineGlobal.h"

#include <QColor>
#include <QSettings>
#include <QVariant>

#include <new>

// QSettings where an empty value counts as not set: the base of the player's own settings. QML sees
// it as the uncreatable "Settings" that the class Settings takes the name of; objects of it offer
// scripts their path and synchronize() only. Nothing here reports a failure.
class TESSALINE_EXPORT SettingsBase : public QSettings
{
    Q_OBJECT
    Q_PROPERTY(QString path READ path CONSTANT)

public:
    explicit SettingsBase(QObject *parent = nullptr);
    explicit SettingsBase(const QString &organization, const QString &application = QString(),
                          QObject *parent = nullptr);
    SettingsBase(QSettings::Scope scope, const QString &organization,
                 const QString &application = QString(), QObject *parent = nullptr);
    SettingsBase(QSettings::Format format, QSettings::Scope scope, const QString &organization,
                 const QString &application = QString(), QObject *parent = nullptr);
    SettingsBase(const QString &fileName, QSettings::Format format, QObject *parent = nullptr);

    QString path() const { return fileName(); }

    Q_INVOKABLE void synchronize();

    // A value whose text is blank reads as the default. That holds for every type, so a list or a
    // map, which have no text form, can be stored but never reads back.
    QVariant value(const QString &key, const QVariant &defaultValue = QVariant()) const;
    // Stores what isn't null, isn't equal to the default and has a text; removes the key otherwise.
    void setValue(const QString &key, const QVariant &value,
                  const QVariant &defaultValue = QVariant());

    QVariant groupValue(const QString &group, const QString &key,
                        const QVariant &defaultValue = QVariant());
    void setGroupValue(const QString &group, const QString &key, const QVariant &value);

    // Stores "#rrggbb", or "#aarrggbb" for a colour that isn't opaque.
    void setColorValue(const QString &key, const QColor &color);
    static QString colorText(const QColor &color);

    // Removes one key, and the group of that name. An empty key would be the whole store to
    // QSettings, and is nothing here: setting no value must not lose all the others.
    static void removeKey(QSettings &settings, const QString &key);
    // Whether a key can have a value: an empty one, or one of slashes alone, can't.
    static bool isValueKey(const QString &key);

    // What `access` gives, or `failed`, with a warning, where QSettings can't bear its file: it
    // reads at the first access, and believes a damaged file about the memory that a value needs.
    // It stays sound then, reads again at the next access, and doesn't write over such a file.
    template <typename Result, typename Access>
    static Result guarded(const QSettings &settings, Result failed, Access access)
    {
        try {
            return access();
        } catch (const std::bad_alloc &) {
            reportDamage(settings);
            return failed;
        }
    }

protected:
    bool event(QEvent *event) override;

private:
    static void reportDamage(const QSettings &settings);
};
