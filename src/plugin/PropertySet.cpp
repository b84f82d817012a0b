#include "plugin/PropertySet.h"

#include "plugin/ScriptValue.h"

#include <QPointer>
#include <QQmlEngine>
#include <QScopedValueRollback>

/*!
    \qmltype PropertySet
    \inqmlmodule Zemrik.Tessaline
    \brief Named values that can be used one by one and as a whole.

    A script adds and changes keys as properties of the object. The set as a whole is read and
    merged as \l json, searched with containsValue(), and serves as the variables of a text
    template.

    \qml
    PropertySet {
        id: person

        Component.onCompleted: {
            person.name = "Ada";
            person["home town"] = "London";
            console.log(person.replaceVariables("@name@ lives in @home town@"));
        }
        onValueChanged: console.log(key, "is now", value)
    }
    \endqml

    A binding to a key follows its value. New keys come from scripts or from C++; a declaration such
    as \c{name: "Ada"} inside the element is refused by the engine, which knows no such property.
*/

/*!
    \qmlsignal PropertySet::valueChanged(string key, var value)
    A script, \l json, or clear() has given \a key a new \a value.
*/

namespace {

// Carries the method for scripts, in a class without dynamic properties. The script engine owns the
// object, for as long as a script holds the function.
class VariableReplacer : public QObject
{
    Q_OBJECT

public:
    explicit VariableReplacer(PropertySet *set)
        : m_set(set)
    {
    }

    Q_INVOKABLE QString replaceVariables(const QString &text, bool caseSensitive = false,
                                         const QString &variableFormat = QString()) const
    {
        return m_set ? m_set->replaceVariables(text, caseSensitive, variableFormat) : text;
    }

private:
    const QPointer<PropertySet> m_set;
};

} // namespace

PropertySet::PropertySet(QObject *parent)
    : PropertySet(this, parent)
{
}

/*!
    \qmlproperty object PropertySet::json

    The set as one object; a PropertySet among the values appears as an object of its own.
    Assigning an object merges it: its keys are set, all other keys stay. There is no notification
    for the property itself; valueChanged() tells of each key.
*/

QVariantMap PropertySet::json() const
{
    QVariantMap map;
    if (m_reading)
        return map;
    const QScopedValueRollback<bool> reading(m_reading, true);
    const QStringList names = keys();
    for (const QString &key : names) {
        const QVariant entry = value(key);
        const auto *set = qobject_cast<const PropertySet *>(entry.value<QObject *>());
        map.insert(key, set ? QVariant(set->json()) : entry);
    }
    return map;
}

void PropertySet::setJson(const QVariantMap &map)
{
    for (auto it = map.begin(); it != map.end(); ++it)
        setValue(it.key(), it.value());
}

/*!
    \qmlmethod void PropertySet::clear()

    Resets every value to undefined. The keys themselves stay: containsKey() still finds them, and
    value() answers with its default.
*/

void PropertySet::clear()
{
    const QStringList names = keys();
    for (const QString &key : names) {
        clear(key);
        emit valueChanged(key, QVariant());
    }
}

/*!
    \qmlmethod var PropertySet::value(string key, var defaultValue)
    The key's value, or \a defaultValue if the \a key isn't there or its value is undefined.
*/

QVariant PropertySet::value(const QString &key, const QVariant &defaultValue) const
{
    const QVariant current = value(key);
    return current.isValid() ? current : defaultValue;
}

/*!
    \qmlmethod string PropertySet::replaceVariables(string text, bool caseSensitive, string format)

    Returns the \a text with each variable replaced by the value of its key. Case is ignored unless
    \a caseSensitive is true. The word \c key in \a format stands for the key; the default
    format is \c{@key@}. Variables that the set doesn't know stay in the text.

    \code
    set.replaceVariables("Dear ${name}", true, "${key}")
    \endcode

    The keys take their turn in order, so a value that contains the pattern of a later key is
    expanded in turn.
*/

QString PropertySet::replaceVariables(const QString &text, bool caseSensitive,
                                      const QString &variableFormat) const
{
    QString format = variableFormat.isEmpty() ? QStringLiteral("@key@") : variableFormat;
    format.replace(QLatin1String("key"), QLatin1String("%1"));

    const Qt::CaseSensitivity sensitivity = caseSensitive ? Qt::CaseSensitive : Qt::CaseInsensitive;
    QString result = text;
    const QStringList names = keys();
    for (const QString &key : names)
        result.replace(format.arg(key), value(key).toString(), sensitivity);
    return result;
}

QJSValue PropertySet::replaceVariablesFunction()
{
    QJSEngine *engine = qjsEngine(this);
    if (!engine)
        return QJSValue();
    return engine->newQObject(new VariableReplacer(this))
        .property(QStringLiteral("replaceVariables"));
}

/*!
    \qmlmethod bool PropertySet::containsKey(string key)
    Returns whether the set has the \a key, with whatever value.
*/

bool PropertySet::containsKey(const QString &key) const
{
    return contains(key);
}

/*!
    \qmlmethod list<string> PropertySet::containsValue(var value)
    The keys that hold the \a value, in the order in which they were added; empty if none does.
*/

QStringList PropertySet::containsValue(const QVariant &value) const
{
    const QVariant wanted = plainValue(value);
    QStringList found;
    const QStringList names = keys();
    for (const QString &key : names) {
        if (plainValue(this->value(key)) == wanted)
            found.append(key);
    }
    return found;
}

void PropertySet::setValue(const QString &key, const QVariant &value)
{
    if (plainValue(this->value(key)) == plainValue(value))
        return;
    insert(key, value);
    emit valueChanged(key, value);
}

void PropertySet::classBegin()
{
    m_initializing = true;
}

void PropertySet::componentComplete()
{
    m_initializing = false;
}

QVariant PropertySet::updateValue(const QString &key, const QVariant &input)
{
    Q_UNUSED(key)
    return input;
}

#include "moc_PropertySet.cpp"
#include "PropertySet.moc"
