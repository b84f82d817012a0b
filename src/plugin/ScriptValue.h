#pragma once

#include <QJSValue>
#include <QVariant>

// Objects and arrays of a script arrive wrapped in a QVariant, equal to nothing and convertible to
// nothing. Returns what is inside as a plain value; any other value as it is.
inline QVariant plainValue(const QVariant &value)
{
    return value.userType() == qMetaTypeId<QJSValue>() ? value.value<QJSValue>().toVariant()
                                                       : value;
}
