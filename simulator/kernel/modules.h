// Modules that the simulator implements: libraries of the system that programs load by name.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

#include "winbase.h"

namespace win32 {

struct BuiltinFunction {
    const char* name;
    FARPROC address;
};

// Makes a library of the system loadable under `name`, such as "comctl32.dll".
void RegisterBuiltinModule(std::string_view name, std::initializer_list<BuiltinFunction> functions);

// References to libraries that LoadLibraryA has added and FreeLibrary has not removed.
std::size_t LibraryReferences();

// The path with POSIX separators.
std::string PosixPath(std::string_view path);

}  // namespace win32
