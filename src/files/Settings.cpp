#include "files/Settings.h"

#include "files/SettingsBase.h"
#include "plugin/JsonUtility.h"
#include "plugin/ScriptValue.h"
#include "plugin/TessalineDebug.h"

#include <QFileDevice>
#include <QMetaProperty>

/*!
    \qmltype Settings
    \inqmlmodule Zemrik.Tessaline
    \brief Values that last from one run to the next.

    The properties that a document declares on its Settings element persist by themselves, each
    under its own name. The first run stores the values they are declared with.

    \qml
    Settings {
        id: settings

        property string userName: "nobody"
        property int visits: 0
        property alias sidebarWidth: sidebar.width

        Component.onCompleted: visits += 1
    }
    \endqml

    Other values are read and written with the methods. A key may have groups, parted by "/":

    \qml
    Settings {
        Component.onCompleted: setValue("window/color", "steelblue")
    }
    \endqml

    An element uses the store of the program that shows it. Further stores come from
    \c{Tessaline.settings}, \l{App::settings} and FileFolder::settingsFile().

    Texts of nothing but blanks count as not set, and objects can't be stored. In a native or INI
    store a value comes back as text in the next run: a property with a type of its own converts it,
    a \c var does not, and neither does value(). Use boolValue() and numberValue() there, since a
    script takes the text "false" for true. Store a URL as its text.

    Failures aren't reported. What can't be written, on a full disk for instance, is kept in memory
    and tried again; an unreadable store is empty. One so damaged that its values can't be had is
    left as it is, with a warning in the log. A key that is empty or made of slashes has no value.
*/

/*!
    \qmlproperty string Settings::path
    \readonly
    The file that holds the values.
*/

/*!
    \qmlproperty bool Settings::fallbacksEnabled
    Whether a value that is missing here is looked up in the stores that all programs of the
    organisation, and all users, share. True by default. Has no notify signal.
*/

/*!
    \qmlmethod void Settings::synchronize()
    Writes changes to disk and reads those of other programs. Without it, that happens when control
    returns to the event loop, and when the object goes.
*/

/*!
    \qmlmethod var Settings::value(string key, var defaultValue)
    The value stored under \a key, or \a defaultValue, undefined if left out, if there is none or a
    blank text. A text comes with the blanks around it.
*/

/*!
    \qmlmethod void Settings::setValue(string key, var value, var defaultValue)
    Stores \a value under \a key and emits valueChanged(). Undefined, null, a blank text, an object,
    and a value equal to \a defaultValue remove the key instead, without a signal. \a defaultValue
    may be left out.
*/

/*!
    \qmlmethod color Settings::colorValue(string key, color defaultValue)
    The value stored under \a key as a colour; \a defaultValue if there is none, and an invalid
    colour if what is stored is none.
*/

/*!
    \qmlmethod void Settings::setColorValue(string key, color value)
    Stores the colour \a value under \a key as "#rrggbb", or "#aarrggbb" if it isn't opaque.
*/

/*!
    \qmlmethod bool Settings::boolValue(string key, bool defaultValue)
    Returns the value stored under \a key as a bool; the texts "false" and "0" are false.
    \a defaultValue is false if left out.
*/

/*!
    \qmlmethod real Settings::numberValue(string key, real defaultValue)
    The value stored under \a key as a number, 0 for what is none. \a defaultValue is 0 if left out.
*/

/*!
    \qmlmethod void Settings::remove(string key)
    Removes the value of \a key, and all values of the group of that name. An empty key removes
    everything.
*/

/*!
    \qmlmethod bool Settings::contains(string key)
    Returns true if something is stored under \a key, be it a blank text.
*/

/*!
    \qmlsignal Settings::valueChanged(string key)
    A value was stored under \a key. Removals have no signal.
*/

namespace {

bool isObjectType(int type)
{
    return QMetaType::typeFlags(type).testFlag(QMetaType::PointerToQObject)
           || QByteArray(QMetaType::typeName(type)).startsWith("QQmlList");
}

// The value without the QObjects in it: a store would keep bare pointers, which outlive the objects
// and would be handed out to the next element that declares a property of that name.
QVariant storable(const QVariant &value)
{
    if (isObjectType(value.userType()))
        return QVariant();
    if (value.userType() == QMetaType::QVariantMap) {
        QVariantMap map = value.toMap();
        for (QVariant &member : map)
            member = storable(member);
        return map;
    }
    if (value.userType() == QMetaType::QVariantList) {
        QVariantList list = value.toList();
        for (QVariant &element : list)
            element = storable(element);
        return list;
    }
    return value;
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
        qCDebug(FRAMEWORK_FILE) << Q_FUNC_INFO << static_cast<int>(format);
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
    SettingsBase::guarded(*this, false, [this] {
        sync();
        return true;
    });
}

QVariant Settings::value(const QString &key, const QVariant &defaultValue) const
{
    const QVariant stored = SettingsBase::guarded(
        *this, defaultValue, [&] { return QSettings::value(key, defaultValue); });
    return stored.isNull() || isBlankText(stored) ? defaultValue : stored;
}

void Settings::setValue(const QString &key, const QVariant &value, const QVariant &defaultValue)
{
    const QVariant newValue = storable(plainValue(value));
    const QVariant plainDefault = plainValue(defaultValue);
    const bool isDefault = !plainDefault.isNull() && newValue == plainDefault;
    if (newValue.isNull() || isDefault || isBlankText(newValue)) {
        SettingsBase::removeKey(*this, key);
        return;
    }

    if (!SettingsBase::isValueKey(key))
        return;
    QSettings::setValue(key, newValue);
    emit valueChanged(key);
    if (m_syncOnWrite)
        synchronize();
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
    SettingsBase::guarded(*this, false, [&] {
        QSettings::remove(key);
        return true;
    });
}

bool Settings::contains(const QString &key) const
{
    return SettingsBase::guarded(*this, false, [&] { return QSettings::contains(key); });
}

// The event loop has QSettings write what was changed, and nobody there catches anything.
bool Settings::event(QEvent *event)
{
    return SettingsBase::guarded(*this, true, [&] { return QSettings::event(event); });
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
    const QVector<QMetaProperty> properties = declaredProperties(this);
    for (const QMetaProperty &property : properties) {
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
    const QVector<QMetaProperty> properties = declaredProperties(this);
    for (const QMetaProperty &property : properties)
        readProperty(property);
}

void Settings::readProperty(const QMetaProperty &property)
{
    const QString key = QString::fromUtf8(property.name());
    const QVariant current = plainValue(property.read(this));
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
    const QObject *object = sender();
    if (!object)
        return;
    // The property is found by the naming convention: its notify signal's name less "Changed".
    QByteArray name = object->metaObject()->method(senderSignalIndex()).name();
    name.chop(static_cast<int>(qstrlen("Changed")));
    setValue(QString::fromUtf8(name), object->property(name.constData()));
}

#include "moc_Settings.cpp"
