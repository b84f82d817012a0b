#include "plugin/Environment.h"

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
    const QJSValue former = isSet(name) ? this->value(name, QString()) : QJSValue();
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
    const QJSValue former = value(name);
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
