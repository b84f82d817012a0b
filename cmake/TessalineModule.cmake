# Makes the module's folder complete: qmldir, and the type description taken from the built library.

configure_file("${PROJECT_SOURCE_DIR}/src/imports/Zemrik/Tessaline/qmldir"
               "${TESSALINE_MODULE_DIR}/qmldir" COPYONLY)

set(TESSALINE_COMMITTED_QMLTYPES "${PROJECT_SOURCE_DIR}/src/imports/Zemrik/Tessaline/plugins.qmltypes")
set(TESSALINE_QMLTYPES "${TESSALINE_MODULE_DIR}/plugins.qmltypes")
find_program(QMLPLUGINDUMP qmlplugindump HINTS /usr/lib/qt5/bin REQUIRED)

if(TESSALINE_SANITIZE)
    # qmlplugindump isn't instrumented and can't load a sanitized library: the committed file serves.
    configure_file("${TESSALINE_COMMITTED_QMLTYPES}" "${TESSALINE_QMLTYPES}" COPYONLY)
else()
    add_custom_command(TARGET Tessaline POST_BUILD
        COMMAND ${CMAKE_COMMAND} -DQMLPLUGINDUMP=${QMLPLUGINDUMP}
                -DLIBRARY=$<TARGET_FILE:Tessaline> -DQMLDIR=${TESSALINE_MODULE_DIR}/qmldir
                -DOUTPUT=${TESSALINE_QMLTYPES}
                -P "${PROJECT_SOURCE_DIR}/cmake/DumpQmlTypes.cmake"
        BYPRODUCTS "${TESSALINE_QMLTYPES}"
        COMMENT "Describing the QML types in plugins.qmltypes"
        VERBATIM)
endif()
