#pragma once

#include "plugin/TessalineGlobal.h"

#include <QMetaEnum>
#include <QString>
#include <QVariant>

// Looks Qt's meta-enums up by name or value, leniently: keys match without regard to case. A missing
// enum is reported at critical level under FRAMEWORK_UTILITY and gives the default.
class TESSALINE_EXPORT EnumUtility
{
public:
    EnumUtility() = delete;

    // Invalid if there is none of that name.
    static QMetaEnum enumerator(const QMetaObject *metaObject, const char *name);
    static QMetaEnum enumerator(const QObject *object, const char *name);

    static int enumValue(const QMetaEnum &metaEnum, const QString &text, int defaultValue);
    // A variant that converts to a number must be a value of the enum; others go by their text.
    static int enumValue(const QMetaEnum &metaEnum, const QVariant &variant, int defaultValue);
    static int enumValue(const QMetaObject *metaObject, const char *enumName, const QString &text,
                         int defaultValue);
    static int enumValue(const QMetaObject *metaObject, const char *enumName,
                         const QVariant &variant, int defaultValue);
    static int enumValue(const QObject *object, const char *enumName, const QString &text,
                         int defaultValue);
    static int enumValue(const QObject *object, const char *enumName, const QVariant &variant,
                         int defaultValue);

    // Null if the enum or the value isn't known.
    static const char *enumValueName(const QMetaEnum &metaEnum, int value);
    static const char *enumValueName(const QMetaObject *metaObject, const char *enumName,
                                     int value);
    static const char *enumValueName(const QObject *object, const char *enumName, int value);
};
