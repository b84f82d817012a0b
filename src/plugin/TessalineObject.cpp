#include "plugin/TessalineObject.h"

#include <QQmlEngine>

/*!
    \qmltype TessalineObject
    \inqmlmodule Zemrik.Tessaline
    \brief Common base type of the objects of this module.

    It can't be created in QML and has no properties of its own. Use it as the type of a property
    that may hold any of the module's objects:

    \badcode
    property TessalineObject source
    \endcode
*/

TessalineObject::TessalineObject(QObject *parent)
    : QObject(parent)
{
}

QObject *TessalineObject::setJavaScriptOwnership(QObject *object)
{
    if (object)
        QQmlEngine::setObjectOwnership(object, QQmlEngine::JavaScriptOwnership);
    return object;
}

#include "moc_TessalineObject.cpp"
