# The headers that hosts may use: those that export something. Each stays in its room and has a
# one-line forwarder, so that a host writes <Tessaline/FileFolder.h> against the build tree and
# against an installation alike.

set(TESSALINE_FORWARDERS_DIR "${CMAKE_BINARY_DIR}/include/Tessaline")

file(GLOB headers RELATIVE "${CMAKE_CURRENT_SOURCE_DIR}" CONFIGURE_DEPENDS */*.h)
foreach(header ${headers})
    file(STRINGS "${header}" exports REGEX "TESSALINE_EXPORT")
    if(exports)
        get_filename_component(name "${header}" NAME)
        set(TESSALINE_FORWARDED_HEADER "${header}")
        configure_file("${CMAKE_CURRENT_LIST_DIR}/Forwarder.h.in"
                       "${TESSALINE_FORWARDERS_DIR}/${name}" @ONLY)
        get_filename_component(room "${header}" DIRECTORY)
        install(FILES "${header}" DESTINATION "${TESSALINE_INSTALL_INCLUDEDIR}/${room}"
                COMPONENT Development)
        install(FILES "${TESSALINE_FORWARDERS_DIR}/${name}"
                DESTINATION "${TESSALINE_INSTALL_INCLUDEDIR}" COMPONENT Development)
    endif()
endforeach()

target_include_directories(Tessaline INTERFACE "$<BUILD_INTERFACE:${CMAKE_BINARY_DIR}/include>")
