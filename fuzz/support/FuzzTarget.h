#pragma once

#include <QByteArray>
#include <QLoggingCategory>

#include <cstddef>
#include <cstdint>

// The whole of a fuzz target: what to do with one input.
//
//     TESSALINE_FUZZ_TARGET(bytes)
//     {
//         JsonUtility::toVariant(bytes, true);
//     }
//
// The bytes lie in an allocation of their own, so that reading past their end is noticed. Log lines
// are off: there is one for nearly every input.
#define TESSALINE_FUZZ_TARGET(bytes) \
    static void fuzzTarget(const QByteArray &bytes); \
    extern "C" int LLVMFuzzerInitialize(int *, char ***) \
    { \
        QLoggingCategory::setFilterRules(QStringLiteral("*=false")); \
        return 0; \
    } \
    extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) \
    { \
        fuzzTarget(QByteArray(reinterpret_cast<const char *>(data), static_cast<int>(size))); \
        return 0; \
    } \
    static void fuzzTarget(const QByteArray &bytes)
