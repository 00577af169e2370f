// Which Windows the contract tests run on, for the few places where Wine differs from what Windows
// documents.
#pragma once

// Wine exports this function; neither Windows nor the simulator has it.
inline bool IsWine() {
    const HMODULE system = GetModuleHandleA("ntdll.dll");
    return system && GetProcAddress(system, "wine_get_version");
}
