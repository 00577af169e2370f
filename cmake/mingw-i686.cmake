# Cross-building the 32-bit Windows program with MinGW-w64, posix-thread variant.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86)
set(CMAKE_CXX_COMPILER i686-w64-mingw32-g++-posix)
set(CMAKE_C_COMPILER i686-w64-mingw32-gcc-posix)
set(CMAKE_RC_COMPILER i686-w64-mingw32-windres)
set(CMAKE_FIND_ROOT_PATH /usr/i686-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# The programs run under Wine, on a desktop with a prefix in the build folder; so ctest can run the tests.
set(VH_WINDOWS_DESKTOP ${CMAKE_CURRENT_LIST_DIR}/../tools/wine/desktop --prefix ${CMAKE_BINARY_DIR}/wine)
set(CMAKE_CROSSCOMPILING_EMULATOR ${VH_WINDOWS_DESKTOP} wine)
