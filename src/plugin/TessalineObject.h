#pragma once

#include "plugin/TessalineGlobal.h"

#include <QObject>

// Common base of the classes that QML sees. QML name: TessalineObject, uncreatable.
class TESSALINE_EXPORT TessalineObject : public QObject
{
    Q_OBJECT

public:
    explicit TessalineObject(QObject *parent = nullptr);

    // Gives a parentless object to the script engine, which deletes it once no script refers to it.
    // Returns the object; null is allowed and returned.
    static QObject *setJavaScriptOwnership(QObject *object);

    // The same for objects of a derived class, without a cast at the caller.
    template <typename T>
    static T *givenToScript(T *object)
    {
        setJavaScriptOwnership(object);
        return object;
    }
};
