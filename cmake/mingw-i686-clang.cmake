# Cross-building the 32-bit Windows program with Clang, on the headers, libraries and linker of MinGW-w64 (see
# mingw-i686.cmake): C++ library, exception tables and thread-local variables are those of GCC.
include(${CMAKE_CURRENT_LIST_DIR}/mingw-i686.cmake)
execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=
    OUTPUT_VARIABLE gcc_folder OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
set(CMAKE_CXX_COMPILER clang++-16)
set(CMAKE_C_COMPILER clang-16)
set(CMAKE_CXX_COMPILER_TARGET i686-w64-mingw32)
set(CMAKE_C_COMPILER_TARGET i686-w64-mingw32)
set(CMAKE_C_FLAGS_INIT "-femulated-tls -B ${gcc_folder} -pthread")
foreach(kind EXE SHARED MODULE)
    set(CMAKE_${kind}_LINKER_FLAGS_INIT "-L ${gcc_folder}")
endforeach()
set(CMAKE_CXX_FLAGS_INIT "${CMAKE_C_FLAGS_INIT} -nostdinc++")
foreach(part "" i686-w64-mingw32 backward)
    string(APPEND CMAKE_CXX_FLAGS_INIT " -isystem ${gcc_folder}/include/c++/${part}")
endforeach()
