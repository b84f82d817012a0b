#pragma once

#include <QtGlobal>

// Marks what hosts and tests may use; everything else in the library stays hidden.
#ifdef TESSALINE_LIBRARY
#define TESSALINE_EXPORT Q_DECL_EXPORT
#else
#define TESSALINE_EXPORT Q_DECL_IMPORT
#endif
