# win32_api on Windows: the headers and import libraries of MinGW, for Windows 7 and later.
# (On POSIX the target of the same name is simulator.)
add_library(win32_api INTERFACE)
target_compile_definitions(win32_api INTERFACE
    WIN32_LEAN_AND_MEAN NOMINMAX WINVER=0x0601 _WIN32_WINNT=0x0601)
target_link_libraries(win32_api INTERFACE
    comctl32 shell32 ole32 oleaut32 version msi ws2_32 gdi32 advapi32 user32)
# The runtime of the compiler is linked statically, so that it need not be shipped.
add_link_options(-static)
# For size: the linker can drop each function that is not called.
add_compile_options(-ffunction-sections -fdata-sections)
