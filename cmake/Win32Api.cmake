# win32_api on Windows: MinGW's own headers and import libraries, Windows 7 as the oldest system.
# (On POSIX the target of the same name is platform/posix.)
add_library(win32_api INTERFACE)
target_compile_definitions(win32_api INTERFACE
    WIN32_LEAN_AND_MEAN NOMINMAX WINVER=0x0601 _WIN32_WINNT=0x0601)
target_link_libraries(win32_api INTERFACE
    comctl32 shell32 ole32 oleaut32 version msi ws2_32 gdi32 advapi32 user32)
# Nothing of the compiler's runtime is shipped beside the program.
add_link_options(-static)
# Small: each function can be left out on its own when nothing calls it.
add_compile_options(-ffunction-sections -fdata-sections)
