#include "plugin/Environment.h"

/*!
    \qmltype Environment
    \inqmlmodule Zemrik.Tessaline
    \brief The environment variables of the process.

    QML can't create this type; use \c{Tessaline.environment}.

    \qml
    Item {
        Component.onCompleted: {
            Tessaline.environment.setValue("LIBRARY_CACHE", "512");
            console.log(Tessaline.environment.value("EDITOR", "none"));
        }
    }
    \endqml

    A name that the system doesn't allow, one that is empty or holds a "=", can't be set.
*/

/*!
    \qmlmethod var Environment::value(string variable, var defaultValue)
    The text of \a variable, which may be empty; \a defaultValue, undefined if left out, if it isn't
    set.
*/

/*!
    \qmlmethod var Environment::setValue(string name, var value)
    Sets the variable \a name to the text of \a value, or unsets it for undefined and null. Returns
    the former text, undefined if there was none.
*/

/*!
    \qmlmethod var Environment::remove(string name)
    Unsets the variable \a name and returns its text, undefined if there was none. Emits nothing.
*/

/*!
    \qmlmethod bool Environment::isSet(string name)
    Returns true if the variable \a name is set, be it to an empty text.
*/

/*!
    \qmlmethod bool Environment::isEmpty(string name)
    Returns true if the variable \a name is empty or isn't set.
*/

/*!
    \qmlsignal Environment::valueChanged(string name, var value)
    setValue() was called, whether or not it changed something. \a value is the text of the variable
    \a name now, empty after a removal.
*/

Environment::Environment(QObject *parent)
    : QObject(parent)
{
}

QJSValue Environment::value(const QString &variable, const QJSValue &defaultValue) const
{
    if (!isSet(variable))
        return defaultValue;
    return QString::fromUtf8(qgetenv(variable.toUtf8().constData()).constData());
}

QJSValue Environment::setValue(const QString &name, const QJSValue &value)
{
    QJSValue former = isSet(name) ? this->value(name, QString()) : QJSValue();
    const QByteArray variable = name.toUtf8();
    if (value.isUndefined() || value.isNull())
        qunsetenv(variable.constData());
    else
        qputenv(variable.constData(), value.toString().toUtf8());
    emit valueChanged(name, this->value(name, QString()));
    return former;
}

QJSValue Environment::remove(const QString &name)
{
    if (!isSet(name))
        return QJSValue();
    QJSValue former = value(name);
    qunsetenv(name.toUtf8().constData());
    return former;
}

bool Environment::isSet(const QString &name) const
{
    return qEnvironmentVariableIsSet(name.toUtf8().constData());
}

bool Environment::isEmpty(const QString &name) const
{
    return qEnvironmentVariableIsEmpty(name.toUtf8().constData());
}

void Environment::setValues(const QVariantMap &values, bool overwrite)
{
    for (auto it = values.constBegin(); it != values.constEnd(); ++it) {
        const QByteArray name = it.key().toUtf8();
        if (overwrite || !qEnvironmentVariableIsSet(name.constData()))
            qputenv(name.constData(), it.value().toString().toUtf8());
    }
}

#include "moc_Environment.cpp"
