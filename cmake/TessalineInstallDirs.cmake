# Where an installation has what GNUInstallDirs knows nothing of.
#
# The QML module goes below the prefix, where the player finds it relative to itself. A distribution
# rather names Qt's own folder, which every engine looks into:
#     cmake -DTESSALINE_INSTALL_QMLDIR=$(qmake -query QT_INSTALL_QML) ...
set(TESSALINE_INSTALL_QMLDIR "lib/qml" CACHE STRING
    "Folder of QML modules, relative to the prefix or absolute")
set(TESSALINE_INSTALL_MODULEDIR "${TESSALINE_INSTALL_QMLDIR}/Zemrik/Tessaline")
set(TESSALINE_INSTALL_INCLUDEDIR "${CMAKE_INSTALL_INCLUDEDIR}/Tessaline")
set(TESSALINE_INSTALL_CMAKEDIR "${CMAKE_INSTALL_LIBDIR}/cmake/Tessaline")
set(TESSALINE_INSTALL_EXAMPLESDIR "${CMAKE_INSTALL_DATADIR}/tessaline/examples")

foreach(dir QMLDIR MODULEDIR EXAMPLESDIR)
    GNUInstallDirs_get_absolute_install_dir(
        TESSALINE_INSTALL_FULL_${dir} TESSALINE_INSTALL_${dir} ${dir})
endforeach()

# How an installed program finds the library, wherever the prefix has been moved to.
file(RELATIVE_PATH moduleFromPrograms
     "${CMAKE_INSTALL_FULL_BINDIR}" "${TESSALINE_INSTALL_FULL_MODULEDIR}")
set(TESSALINE_INSTALL_RPATH "$ORIGIN/${moduleFromPrograms}")
