# Compiler settings that every target of the project shares.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    # Without this sloppiness nothing that uses the precompiled header is ever cached.
    set(CMAKE_CXX_COMPILER_LAUNCHER
        ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${CCACHE_PROGRAM})
endif()
# ccache looks a precompiled header up by its text, which needs this under GCC.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_compile_options($<$<COMPILE_LANGUAGE:CXX>:-fpch-preprocess>)
endif()

add_compile_options(-Wall -Wextra -Wpedantic)
if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    # Every qCDebug() leaves the variadic part of its macro empty.
    add_compile_options(-Wno-gnu-zero-variadic-macro-arguments)
endif()
if(TESSALINE_WERROR)
    add_compile_options(-Werror)
endif()
add_compile_definitions(
    QT_NO_CAST_TO_ASCII
    QT_NO_CAST_FROM_BYTEARRAY
    QT_NO_URL_CAST_FROM_STRING
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT)

if(TESSALINE_SANITIZE)
    add_compile_options(-fsanitize=${TESSALINE_SANITIZE} -fno-omit-frame-pointer
                        -fno-sanitize-recover=undefined)
    add_link_options(-fsanitize=${TESSALINE_SANITIZE})
endif()
if(TESSALINE_BUILD_FUZZERS)
    # The library only counts its edges here; libFuzzer itself is linked into the targets.
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()
if(TESSALINE_COVERAGE)
    add_compile_options(--coverage)
    add_link_options(--coverage)
endif()
