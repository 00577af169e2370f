// Which Windows the contract tests run on, for the few places where Wine differs from what Windows
// documents.
#pragma once

#include <windows.h>

// Wine says who it is; neither Windows nor the simulator has that function.
inline bool IsWine() {
    const HMODULE system = GetModuleHandleA("ntdll.dll");
    return system && GetProcAddress(system, "wine_get_version");
}
