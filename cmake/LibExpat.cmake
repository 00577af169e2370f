# expat_headers: where expat.h is. The applet loads the parser library at run time, on both platforms, so nothing
# is linked with it. It finds LIBEXPAT.dll beside the programs. For Windows it is built here from the source
# package of the distribution, since there is no MinGW package of expat.
add_library(expat_headers INTERFACE)

if(NOT WIN32)
    find_path(EXPAT_INCLUDE_DIR expat.h REQUIRED)
    target_include_directories(expat_headers SYSTEM INTERFACE ${EXPAT_INCLUDE_DIR})
    add_dependencies(expat_headers posix_expat)
    return()
endif()

set(VH_EXPAT_SOURCE "" CACHE PATH "expat's source tree; empty: the distribution's, fetched with apt")
if(VH_EXPAT_SOURCE STREQUAL "")
    set(expat_source ${CMAKE_BINARY_DIR}/expat-source)
    execute_process(COMMAND ${CMAKE_SOURCE_DIR}/setup/fetch-expat ${expat_source} COMMAND_ERROR_IS_FATAL ANY)
else()
    set(expat_source ${VH_EXPAT_SOURCE})
endif()

set(EXPAT_BUILD_DOCS OFF CACHE INTERNAL "")
set(EXPAT_BUILD_EXAMPLES OFF CACHE INTERNAL "")
set(EXPAT_BUILD_PKGCONFIG OFF CACHE INTERNAL "")
set(EXPAT_BUILD_TESTS OFF CACHE INTERNAL "")
set(EXPAT_BUILD_TOOLS OFF CACHE INTERNAL "")
set(EXPAT_ENABLE_INSTALL OFF CACHE INTERNAL "")
# The CMake files of expat define XML_DTD without a value, but patches of the distribution compare it. So it is
# defined here, with the value of the distribution's build.
set(EXPAT_DTD OFF CACHE INTERNAL "")
add_subdirectory(${expat_source} ${CMAKE_BINARY_DIR}/expat EXCLUDE_FROM_ALL)
target_compile_definitions(expat PRIVATE XML_DTD=1)
# Small: the C runtime of Windows formats the numbers, and no exception passes through the library.
target_compile_definitions(expat PRIVATE __USE_MINGW_ANSI_STDIO=0)
target_compile_options(expat PRIVATE -fno-asynchronous-unwind-tables)
set_target_properties(expat PROPERTIES
    PREFIX ""
    OUTPUT_NAME LIBEXPAT
    SUFFIX .dll
    RUNTIME_OUTPUT_DIRECTORY ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}
    EXCLUDE_FROM_ALL FALSE)
target_link_options(expat PRIVATE -s -Wl,--gc-sections -Wl,--nxcompat -Wl,--dynamicbase)
set(EXPAT_INCLUDE_DIR ${expat_source}/lib)
target_include_directories(expat_headers SYSTEM INTERFACE ${EXPAT_INCLUDE_DIR})
# A target that uses the headers needs the library beside its program.
add_dependencies(expat_headers expat)
