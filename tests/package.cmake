# Builds the package and shows that it holds what administrators need, and nothing else:
#   cmake -D BUILD=<build folder> -D PACKAGE=<name without .zip> -P tests/package.cmake
set(expected
    LIBEXPAT.dll READ_ME.txt licences/expat.txt licences/gcc-runtime.txt licences/mingw-w64-runtime.txt
    vh_tray.exe)
execute_process(COMMAND ${CMAKE_COMMAND} --build ${BUILD} --target package
    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${CMAKE_COMMAND} -E tar tf ${BUILD}/${PACKAGE}.zip
    OUTPUT_VARIABLE listing COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "[^\n]+[^/\n]\n" files "${listing}")
list(TRANSFORM files STRIP)
list(TRANSFORM files REPLACE "^${PACKAGE}/" "")
list(SORT files)
if(NOT files STREQUAL expected)
    message(FATAL_ERROR "the package holds: ${files}")
endif()
