#pragma once

#include "plugin/TessalineGlobal.h"

#include <QLoggingCategory>

// The category "Zemrik.Runtime.Utility" of the static tool classes.
TESSALINE_EXPORT const QLoggingCategory &CATEGORY_UTILITY();
