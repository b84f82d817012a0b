#pragma once

#include "plugin/TessalineGlobal.h"

#include <QLoggingCategory>
#include <QString>

class QObject;

// The category "Zemrik.Runtime.Utility" of the static tool classes.
TESSALINE_EXPORT const QLoggingCategory &CATEGORY_UTILITY();

// Switches whole families of logging categories and dumps objects to the log. For hosts: nothing in
// the library calls these functions.
class TESSALINE_EXPORT DebugUtility
{
public:
    DebugUtility() = delete;

    // Switches the family "Zemrik.Runtime" or "Zemrik.Extras" and leaves the other as it was. Each
    // call, also one with an unknown name, replaces all filter rules by those of the two families;
    // critical messages stay on. The wish is kept on the application object, in the properties
    // "Zemrik.Runtime.loggingEnabled" and "Zemrik.Extras.loggingEnabled", where others can set it.
    static void setAllEnabled(const QString &name, const bool &enabled);

    // Applies the rules in the group [rules] of the user's QtProject/qtlogging.ini whose name holds
    // the filter, without regard to case; an empty filter takes all. Each rule replaces the one
    // before: the last one is in force in the end. Without such a file nothing happens.
    static void loadLoggingFilterRules(const QString &filter);

    // These print at debug level under CATEGORY_UTILITY. The lines about the object itself begin
    // with the text; a null object is said to be one.
    static void dumpObject(const char *text, const QObject *object);
    static void dumpProperties(const QObject *object);
    static void dumpDynamicProperties(const QObject *object);

private:
    static bool m_RuntimeLogging;
    static bool m_ExtrasLogging;
};
