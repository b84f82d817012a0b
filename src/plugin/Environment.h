#pragma once

#include "plugin/TessalineGlobal.h"

#include <QJSValue>
#include <QObject>
#include <QVariantMap>

// The environment of the process. QML name: Environment, uncreatable; Tessaline.environment is the
// one that scripts use. Names and values are UTF-8. Nothing fails visibly: the system refuses a
// name that is empty or holds a "=", and the variable then stays unset.
class TESSALINE_EXPORT Environment : public QObject
{
    Q_OBJECT

public:
    explicit Environment(QObject *parent = nullptr);

    // A variable that is set but empty gives an empty text, not the default.
    Q_INVOKABLE QJSValue value(const QString &variable,
                               const QJSValue &defaultValue = QJSValue()) const;
    // Returns the former value, undefined if there was none. Undefined and null unset the variable.
    Q_INVOKABLE QJSValue setValue(const QString &name, const QJSValue &value);
    // Returns the former value, undefined if there was none. Emits nothing.
    Q_INVOKABLE QJSValue remove(const QString &name);
    Q_INVOKABLE bool isSet(const QString &name) const;
    // True also for a variable that isn't set.
    Q_INVOKABLE bool isEmpty(const QString &name) const;

    // Sets all variables of the map; without `overwrite` those that are set stay. Emits nothing.
    static void setValues(const QVariantMap &values, bool overwrite);

signals:
    // After every setValue(), also one that changed nothing; an empty text after a removal.
    void valueChanged(const QString &name, const QJSValue &value);
};
