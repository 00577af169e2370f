# cmake --build --preset win32 --target package: the zip file that administrators get.
if(NOT WIN32)
    return()
endif()

install(TARGETS vh_tray RUNTIME DESTINATION . COMPONENT applet)
install(FILES $<TARGET_FILE:expat> DESTINATION . COMPONENT applet)
configure_file(${CMAKE_SOURCE_DIR}/packaging/READ_ME.txt ${CMAKE_BINARY_DIR}/READ_ME.txt
    @ONLY NEWLINE_STYLE CRLF)
install(FILES ${CMAKE_BINARY_DIR}/READ_ME.txt DESTINATION . COMPONENT applet)
# The parser's licence, and those of the runtime that is linked into both files.
install(FILES ${expat_source}/COPYING DESTINATION licences RENAME expat.txt COMPONENT applet)
install(FILES /usr/share/doc/mingw-w64-i686-dev/copyright
    DESTINATION licences RENAME mingw-w64-runtime.txt COMPONENT applet)
install(FILES /usr/share/doc/gcc-mingw-w64-i686-posix-runtime/copyright
    DESTINATION licences RENAME gcc-runtime.txt COMPONENT applet)

set(CPACK_GENERATOR ZIP)
set(package ${PROJECT_NAME}-${PROJECT_VERSION}-win32)
set(CPACK_PACKAGE_FILE_NAME ${package})
set(CPACK_COMPONENTS_ALL applet)
set(CPACK_COMPONENT_INCLUDE_TOPLEVEL_DIRECTORY ON)
set(CPACK_COMPONENTS_GROUPING ALL_COMPONENTS_IN_ONE)
set(CPACK_ARCHIVE_COMPONENT_INSTALL ON)
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR})
include(CPack)

if(BUILD_TESTING)
    add_test(NAME package COMMAND ${CMAKE_COMMAND} -D BUILD=${CMAKE_BINARY_DIR}
        -D PACKAGE=${package} -P ${CMAKE_SOURCE_DIR}/tests/package.cmake)
endif()
