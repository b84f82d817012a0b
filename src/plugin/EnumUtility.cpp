#include "plugin/EnumUtility.h"

#include "plugin/TessalineDebug.h"

QMetaEnum EnumUtility::enumerator(const QMetaObject *metaObject, const char *name)
{
    if (!name) {
        qCCritical(FRAMEWORK_UTILITY) << Q_FUNC_INFO << "Null enum name";
        return QMetaEnum();
    }
    const int count = metaObject ? metaObject->enumeratorCount() : 0;
    for (int i = 0; i < count; ++i) {
        const QMetaEnum metaEnum = metaObject->enumerator(i);
        if (qstrcmp(metaEnum.name(), name) == 0)
            return metaEnum;
    }
    return QMetaEnum();
}

QMetaEnum EnumUtility::enumerator(const QObject *object, const char *name)
{
    if (!object) {
        qCCritical(FRAMEWORK_UTILITY) << Q_FUNC_INFO << "Null object" << name;
        return QMetaEnum();
    }
    return enumerator(object->metaObject(), name);
}

int EnumUtility::enumValue(const QMetaEnum &metaEnum, const QString &text, int defaultValue)
{
    if (!metaEnum.name()) {
        qCCritical(FRAMEWORK_UTILITY) << Q_FUNC_INFO << "Invalid metaEnum" << text;
        return defaultValue;
    }
    for (int i = 0; i < metaEnum.keyCount(); ++i) {
        if (text.compare(QLatin1String(metaEnum.key(i)), Qt::CaseInsensitive) == 0)
            return metaEnum.value(i);
    }
    return defaultValue;
}

int EnumUtility::enumValue(const QMetaEnum &metaEnum, const QVariant &variant, int defaultValue)
{
    if (!metaEnum.name()) {
        qCCritical(FRAMEWORK_UTILITY) << Q_FUNC_INFO << "Invalid metaEnum" << variant;
        return defaultValue;
    }
    bool isNumber = false;
    const int value = variant.toInt(&isNumber);
    if (isNumber)
        return metaEnum.valueToKey(value) ? value : defaultValue;
    return enumValue(metaEnum, variant.toString(), defaultValue);
}

int EnumUtility::enumValue(const QMetaObject *metaObject, const char *enumName, const QString &text,
                           int defaultValue)
{
    return enumValue(enumerator(metaObject, enumName), text, defaultValue);
}

int EnumUtility::enumValue(const QMetaObject *metaObject, const char *enumName,
                           const QVariant &variant, int defaultValue)
{
    return enumValue(enumerator(metaObject, enumName), variant, defaultValue);
}

int EnumUtility::enumValue(const QObject *object, const char *enumName, const QString &text,
                           int defaultValue)
{
    return enumValue(enumerator(object, enumName), text, defaultValue);
}

int EnumUtility::enumValue(const QObject *object, const char *enumName, const QVariant &variant,
                           int defaultValue)
{
    return enumValue(enumerator(object, enumName), variant, defaultValue);
}

const char *EnumUtility::enumValueName(const QMetaEnum &metaEnum, int value)
{
    if (!metaEnum.name()) {
        qCCritical(FRAMEWORK_UTILITY) << Q_FUNC_INFO << "Invalid metaEnum";
        return nullptr;
    }
    return metaEnum.valueToKey(value);
}

const char *EnumUtility::enumValueName(const QMetaObject *metaObject, const char *enumName,
                                       int value)
{
    return enumValueName(enumerator(metaObject, enumName), value);
}

const char *EnumUtility::enumValueName(const QObject *object, const char *enumName, int value)
{
    return enumValueName(enumerator(object, enumName), value);
}
