// Modules that the subset itself stands for: libraries of the system that programs load by name.
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

// The path with POSIX separators.
std::string PosixPath(std::string_view path);

}  // namespace win32
