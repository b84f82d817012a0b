# cmake -DQMLPLUGINDUMP=... -DLIBRARY=... -DQMLDIR=... -DOUTPUT=... -P DumpQmlTypes.cmake
# Writes the type description of the module that LIBRARY and QMLDIR make up. The dump runs in a
# folder and a home of its own: it makes objects, and they must not touch the user's files.
set(home "${OUTPUT}-dump")
set(module "${home}/Zemrik/Tessaline")
file(REMOVE_RECURSE "${home}")
file(MAKE_DIRECTORY "${module}" "${home}/runtime")
file(CHMOD "${home}/runtime" PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)

# qmlplugindump fails on a qmldir that names dependencies or a description that isn't there yet, so
# it gets one without, and the dependencies are written into its answer.
file(READ "${QMLDIR}" qmldir)
string(REGEX MATCHALL "depends [^\n]+" dependencies "${qmldir}")
string(REGEX REPLACE "(depends|typeinfo) [^\n]*\n" "" qmldir "${qmldir}")
list(TRANSFORM dependencies REPLACE "depends (.+)" "\"\\1\"")
list(JOIN dependencies ", " dependencies)
file(WRITE "${module}/qmldir" "${qmldir}")
file(COPY "${LIBRARY}" DESTINATION "${module}")

execute_process(
    COMMAND ${CMAKE_COMMAND} -E env HOME=${home} XDG_CONFIG_HOME=${home} XDG_DATA_HOME=${home}
            XDG_CACHE_HOME=${home} XDG_RUNTIME_DIR=${home}/runtime QT_QPA_PLATFORM=offscreen
            LC_ALL=C.UTF-8 LANGUAGE=en "QT_LOGGING_RULES=*.debug=false"
            ${QMLPLUGINDUMP} -nonrelocatable -noinstantiate Zemrik.Tessaline 1.0 ${home}
    OUTPUT_VARIABLE types ERROR_VARIABLE messages RESULT_VARIABLE failed)
file(REMOVE_RECURSE "${home}")
if(failed OR NOT types MATCHES "Module")
    message(FATAL_ERROR "qmlplugindump failed (${failed}):\n${messages}")
endif()
# The comment that repeats the command line names this machine's folders.
string(REGEX REPLACE "// 'qmlplugindump[^\n]*\n" "" types "${types}")
string(REGEX REPLACE "dependencies: \\[[^]]*\\]" "dependencies: [${dependencies}]" types "${types}")
file(WRITE "${OUTPUT}" "${types}")
