# One line adds a test. All tests run in a home of their own (tests/support/IsolatedHome.h).
#
#   tessaline_add_test(tst_File.cpp [XVFB] [EXTRA_SOURCES a.cpp] [LIBRARIES Qt5::Xml]
#                      [ENVIRONMENT A=b] [TIMEOUT seconds] [LABELS slow])
#       a Qt Test program; its class ends in TESSALINE_TEST_MAIN(tst_File)
#   tessaline_add_qml_test(tst_File.qml [XVFB] [ENVIRONMENT A=b] [TIMEOUT seconds] [LABELS slow])
#       a Qt Quick Test document, run by our own runner: one process per file, because no engine may
#       start after the first one of a process has gone
#
# Without XVFB a test runs on the "offscreen" platform and must not look at pixels. With XVFB it gets
# an X server of its own and software OpenGL.

set(TESSALINE_TEST_SUPPORT_DIR "${PROJECT_SOURCE_DIR}/tests/support")

function(tessaline_set_test_environment name)
    cmake_parse_arguments(arg "XVFB" "TIMEOUT" "ENVIRONMENT;LABELS" ${ARGN})
    set(environment
        "QT_LOGGING_RULES="
        "LC_ALL=C.UTF-8" "LANGUAGE=en"
        "QML_DISABLE_DISK_CACHE=1"
        "TESSALINE_QML_IMPORT_DIR=${TESSALINE_QML_IMPORT_DIR}"
        "TESSALINE_BIN_DIR=${CMAKE_RUNTIME_OUTPUT_DIRECTORY}"
        "TESSALINE_SOURCE_DIR=${PROJECT_SOURCE_DIR}"
        "UBSAN_OPTIONS=print_stacktrace=1"
        "LSAN_OPTIONS=suppressions=${TESSALINE_TEST_SUPPORT_DIR}/lsan.supp:print_suppressions=0"
        "TSAN_OPTIONS=suppressions=${TESSALINE_TEST_SUPPORT_DIR}/tsan.supp")
    if(arg_XVFB)
        # No strict string checks: libxkbcommon takes texts of a known length, without a zero at their
        # end, out of the X server's answer with strndup().
        list(APPEND environment "QT_QPA_PLATFORM=xcb"
            "ASAN_OPTIONS=detect_stack_use_after_return=1")
    else()
        list(APPEND environment "QT_QPA_PLATFORM=offscreen" "QT_QUICK_BACKEND=software"
            "ASAN_OPTIONS=detect_stack_use_after_return=1:strict_string_checks=1")
    endif()
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 120)
    endif()
    set_tests_properties(${name} PROPERTIES
        ENVIRONMENT "${environment};${arg_ENVIRONMENT}"
        TIMEOUT ${arg_TIMEOUT}
        LABELS "${arg_LABELS}")
endfunction()

# The command with its environment, after the options that its caller has parsed into arg_*.
function(tessaline_register_test name)
    set(command ${ARGN})
    set(xvfb "")
    if(arg_XVFB)
        set(command "${TESSALINE_TEST_SUPPORT_DIR}/with-xvfb" ${command})
        set(xvfb XVFB)
    endif()
    add_test(NAME ${name} COMMAND ${command})
    tessaline_set_test_environment(${name} ${xvfb} TIMEOUT ${arg_TIMEOUT}
        ENVIRONMENT ${arg_ENVIRONMENT} LABELS ${arg_LABELS})
endfunction()

# One moc call for a test's only source. AUTOMOC would add a scan and a further, empty translation unit
# to each of about a hundred programs, a quarter of the time that they take to build.
function(tessaline_moc_own_source name source)
    set_target_properties(${name} PROPERTIES AUTOMOC OFF)
    set(moc "${CMAKE_CURRENT_BINARY_DIR}/${name}.dir/${name}.moc")
    qt5_generate_moc(${source} "${moc}" TARGET ${name})
    target_sources(${name} PRIVATE "${moc}")
    target_include_directories(${name} PRIVATE "${CMAKE_CURRENT_BINARY_DIR}/${name}.dir")
endfunction()

function(tessaline_add_test source)
    cmake_parse_arguments(arg "XVFB" "TIMEOUT" "EXTRA_SOURCES;LIBRARIES;ENVIRONMENT;LABELS" ${ARGN})
    get_filename_component(name ${source} NAME_WE)
    add_executable(${name} ${source} ${arg_EXTRA_SOURCES})
    set_target_properties(${name} PROPERTIES
        RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests"
        PCH_WARN_INVALID OFF)   # a test with further libraries just compiles without it
    target_link_libraries(${name} PRIVATE tessaline-testsupport ${arg_LIBRARIES})
    target_precompile_headers(${name} REUSE_FROM tessaline-testsupport)
    if(NOT arg_EXTRA_SOURCES)
        tessaline_moc_own_source(${name} ${source})
    endif()
    tessaline_register_test(${name} $<TARGET_FILE:${name}>)
endfunction()

function(tessaline_add_qml_test document)
    cmake_parse_arguments(arg "XVFB" "TIMEOUT" "ENVIRONMENT;LABELS" ${ARGN})
    get_filename_component(name ${document} NAME_WE)
    set(name "qml_${name}")
    tessaline_register_test(${name} $<TARGET_FILE:tessaline-qmltest>
        -import "${TESSALINE_QML_IMPORT_DIR}" -input "${CMAKE_CURRENT_SOURCE_DIR}/${document}")
endfunction()
