// The common controls as a library: their initialisation and version.
#include <windows.h>
#include <commctrl.h>
#include <shlwapi.h>

#include "core/last_error.h"
#include "kernel/modules.h"

namespace {

// Version 6, whose header draws sort arrows itself.
HRESULT CALLBACK DllGetVersion(DLLVERSIONINFO* version) {
    if (simulator::InjectedFault<"DllGetVersion">()) return E_FAIL;
    if (version->cbSize != sizeof *version) return E_INVALIDARG;
    *version = {sizeof *version, 6, 0, 0, DLLVER_PLATFORM_NT};
    return S_OK;
}

[[maybe_unused]] const bool g_loadable = [] {
    win32::RegisterBuiltinModule(
        "comctl32.dll",
        {{"DllGetVersion", reinterpret_cast<FARPROC>(reinterpret_cast<void*>(&DllGetVersion))}});
    return true;
}();

}  // namespace

BOOL WINAPI InitCommonControlsEx(const INITCOMMONCONTROLSEX* classes) {
    if (win32::MustFail<"InitCommonControlsEx">()) return FALSE;
    return classes && classes->dwSize == sizeof *classes;
}
