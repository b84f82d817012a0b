#pragma once

#include <cstddef>

// How often malloc(), calloc() or realloc() have been called in this process, from anywhere. Only
// in programs that name support/AllocationCount.cpp among their EXTRA_SOURCES.
std::size_t allocationCount();
