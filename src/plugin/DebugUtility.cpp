#include "plugin/DebugUtility.h"

Q_LOGGING_CATEGORY(CATEGORY_UTILITY, "Zemrik.Runtime.Utility")
