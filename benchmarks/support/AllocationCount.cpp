#include "support/AllocationCount.h"

#include <atomic>

// A program's own malloc() is found before the C library's, by all libraries that it loads.
extern "C" {
void *__libc_malloc(std::size_t size);
void *__libc_calloc(std::size_t count, std::size_t size);
void *__libc_realloc(void *memory, std::size_t size);
}

static std::atomic<std::size_t> allocations{0};

std::size_t allocationCount()
{
    return allocations;
}

extern "C" {

void *malloc(std::size_t size)
{
    ++allocations;
    return __libc_malloc(size);
}

void *calloc(std::size_t count, std::size_t size)
{
    ++allocations;
    return __libc_calloc(count, size);
}

void *realloc(void *memory, std::size_t size)
{
    ++allocations;
    return __libc_realloc(memory, size);
}
}
