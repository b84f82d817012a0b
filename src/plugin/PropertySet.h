#pragma once

#include "plugin/TessalineGlobal.h"

#include <QJSValue>
#include <QQmlParserStatus>
#include <QQmlPropertyMap>
#include <QVariantMap>

// A map of named values that a document reads and writes as plain properties. QML name:
// PropertySet. A key that is only read comes into being too, with an invalid value; value() and
// replaceVariables() treat it as empty. Keys stay in the order of their first use.
class TESSALINE_EXPORT PropertySet : public QQmlPropertyMap, public QQmlParserStatus
{
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    Q_PROPERTY(QVariantMap json READ json WRITE setJson)
    Q_PROPERTY(QJSValue replaceVariables READ replaceVariablesFunction CONSTANT) // see below

public:
    explicit PropertySet(QObject *parent = nullptr);

    // Sets inside this one become maps. A set met again inside itself reads as an empty map.
    QVariantMap json() const;
    // Merges: keys that the map doesn't name stay. valueChanged comes for each key that changes.
    void setJson(const QVariantMap &map);

    // The base class's forms for one key stay reachable beside the ones below.
    using QQmlPropertyMap::clear;
    using QQmlPropertyMap::value;

    // Resets every value; the keys stay, with invalid values. valueChanged comes for each of them.
    Q_INVOKABLE void clear();
    // The default for a key that isn't there or holds an invalid value.
    Q_INVOKABLE QVariant value(const QString &key, const QVariant &defaultValue) const;
    // Puts the values in place of the keys' patterns, key by key, each on the result of the one
    // before. The word "key" in the format stands for the key; an empty format means "@key@".
    // Unknown variables stay as they are.
#ifndef Q_MOC_RUN
    QString replaceVariables(const QString &text, bool caseSensitive = false,
                             const QString &variableFormat = QString()) const;
#endif
    Q_INVOKABLE bool containsKey(const QString &key) const;
    // The keys that hold an equal value, in the order of keys().
    Q_INVOKABLE QStringList containsValue(const QVariant &value) const;

    // Inserts and emits valueChanged, unless the key holds an equal value already.
    void setValue(const QString &key, const QVariant &value);

    void classBegin() override;
    void componentComplete() override;

protected:
    // For derived classes, which hand their own type up as QQmlPropertyMap asks: without it the
    // properties they declare are lost.
    //     Sample::Sample(QObject *parent) : PropertySet(this, parent) {}
    template <typename DerivedType>
    PropertySet(DerivedType *derived, QObject *parent)
        : QQmlPropertyMap(derived, parent)
    {
    }

    QVariant updateValue(const QString &key, const QVariant &input) override;

private:
    // In a class with dynamic properties the engine sees only the last of several overloads, so a
    // method with default arguments would lose its second and third argument. Scripts therefore get
    // the method as a property that holds a function. The engine passes over private methods; as
    // one, the method itself stays in the meta-object for everybody else.
#ifdef Q_MOC_RUN
    Q_INVOKABLE QString replaceVariables(const QString &text, bool caseSensitive = false,
                                         const QString &variableFormat = QString()) const;
#endif
    QJSValue replaceVariablesFunction();

    bool m_initializing = false;
    mutable bool m_reading = false;
};
