#pragma once

#include "plugin/TessalineGlobal.h"

#include <QLoggingCategory>

// The logging categories of the library, one accessor each. All message types are on until filter
// rules say otherwise. A log line is the function's signature, then its words, then values:
//     qCDebug(FRAMEWORK_FILE) << Q_FUNC_INFO << "words" << value;
TESSALINE_EXPORT const QLoggingCategory &FRAMEWORK_PLUGIN();
TESSALINE_EXPORT const QLoggingCategory &FRAMEWORK_CORE();
TESSALINE_EXPORT const QLoggingCategory &FRAMEWORK_FILE();
TESSALINE_EXPORT const QLoggingCategory &FRAMEWORK_PLAYER();
TESSALINE_EXPORT const QLoggingCategory &FRAMEWORK_PROJECT();
TESSALINE_EXPORT const QLoggingCategory &FRAMEWORK_PACKAGE();
TESSALINE_EXPORT const QLoggingCategory &FRAMEWORK_MANAGER();
TESSALINE_EXPORT const QLoggingCategory &FRAMEWORK_NETWORK();
TESSALINE_EXPORT const QLoggingCategory &FRAMEWORK_DEVICE();
TESSALINE_EXPORT const QLoggingCategory &FRAMEWORK_UTILITY();
TESSALINE_EXPORT const QLoggingCategory &FRAMEWORK_IMAGE();

// Switches for a host; nothing in the library calls them.
namespace Debug {

// Turns all "Zemrik.Tessaline." categories on or off. Replaces every filter rule set before, and
// leaves the "Zemrik.Runtime" categories alone (see DebugUtility for those).
TESSALINE_EXPORT void setAllEnabled(bool enabled);

// Does nothing; a public name that hosts may call. See DebugUtility::loadLoggingFilterRules.
TESSALINE_EXPORT void loadFilterRules();

} // namespace Debug
