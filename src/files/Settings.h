#pragma once

#include "plugin/TessalineGlobal.h"

#include <QColor>
#include <QQmlParserStatus>
#include <QSettings>
#include <QVariant>

class QIODevice;
class QMetaProperty;

// A settings store for scripts. QML name: Settings. Blank texts count as not set, a value equal to
// its default isn't stored, and the properties that a document declares on its Settings element
// persist under their own names. Nothing here reports a failure: what can't be read is missing,
// what can't be written stays in memory.
class TESSALINE_EXPORT Settings : public QSettings, public QQmlParserStatus
{
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    Q_PROPERTY(QString path READ path CONSTANT)
    Q_PROPERTY(bool fallbacksEnabled READ fallbacksEnabled WRITE setFallbacksEnabled)

public:
    explicit Settings(QObject *parent = nullptr);
    explicit Settings(const QString &organization, const QString &application = QString(),
                      QObject *parent = nullptr);
    Settings(QSettings::Scope scope, const QString &organization,
             const QString &application = QString(), QObject *parent = nullptr);
    Settings(QSettings::Format format, QSettings::Scope scope, const QString &organization,
             const QString &application = QString(), QObject *parent = nullptr);
    Settings(const QString &fileName, QSettings::Format format, QObject *parent = nullptr);

    // The format whose file is one JSON object with a member per key; a key in a group is one
    // member with a "/" in its name. Registered at the first call.
    static QSettings::Format jsonFormat();
    // Its two halves. Reading takes everything that isn't a JSON object for an empty store and
    // always answers true; writing answers false unless all bytes reached the device.
    static bool readJsonFormat(QIODevice &device, QSettings::SettingsMap &map);
    static bool writeJsonFormat(QIODevice &device, const QSettings::SettingsMap &map);

    QString path() const { return fileName(); }

    Q_INVOKABLE void synchronize();

    // A missing, null or blank value reads as the default; others come back as stored, untrimmed.
    Q_INVOKABLE QVariant value(const QString &key, const QVariant &defaultValue = QVariant()) const;
    // Removes the key, without a signal, for a null value, one equal to the default, or blank text.
    Q_INVOKABLE void setValue(const QString &key, const QVariant &value,
                              const QVariant &defaultValue = QVariant());
    // Invalid, and not the default, if what is stored is no colour.
    Q_INVOKABLE QColor colorValue(const QString &key, const QColor &defaultValue = QColor()) const;
    // Stores "#rrggbb", or "#aarrggbb" for a colour that isn't opaque.
    Q_INVOKABLE void setColorValue(const QString &key, const QColor &value);
    Q_INVOKABLE bool boolValue(const QString &key, bool defaultValue = false) const;
    Q_INVOKABLE double numberValue(const QString &key, double defaultValue = 0.0) const;
    // As QSettings::remove: also what is in the group of that name; an empty key clears the store.
    Q_INVOKABLE void remove(const QString &key);
    Q_INVOKABLE bool contains(const QString &key) const;

    void connectProperties();
    void readProperties();
    // Does nothing: changes are stored as they happen. A public name that hosts may call.
    void writeProperties();

    void classBegin() override;
    void componentComplete() override;

signals:
    // A value was stored; removals are silent.
    void valueChanged(const QString &key);

protected:
    bool event(QEvent *event) override;

private slots:
    void onPropertyChanged();

private:
    void readProperty(const QMetaProperty &property);

    bool m_syncOnWrite = false;
};
