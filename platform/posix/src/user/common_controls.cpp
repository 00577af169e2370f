// The common controls as a library: their start, and the version that they tell.
#include <windows.h>
#include <commctrl.h>

#include "machine/faults.h"
#include "src/modules.h"

namespace {

struct DllVersion {
    DWORD size, major, minor, build, platform;
};

// Version 6, whose header draws sort arrows itself.
HRESULT CALLBACK DllGetVersion(DllVersion* version) {
    if (machine::Strike("DllGetVersion")) return E_FAIL;
    if (version->size != sizeof *version) return E_INVALIDARG;
    constexpr DWORD kWindowsNt = 2;
    *version = {sizeof *version, 6, 0, 0, kWindowsNt};
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
    return classes && classes->dwSize == sizeof *classes;
}
