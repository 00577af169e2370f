// Information about the system.
#include <unistd.h>

#include "simulator/windows_version.h"
#include "core/last_error.h"

BOOL GetVersionExA(LPOSVERSIONINFOA version) {
    if (win32::MustFail<"GetVersionExA">()) return FALSE;
    if (version->dwOSVersionInfoSize < sizeof(OSVERSIONINFOA))
        return win32::Fail(ERROR_INSUFFICIENT_BUFFER, FALSE);
    const auto [major, minor] = simulator::CurrentWindowsVersion();
    version->dwMajorVersion = major;
    version->dwMinorVersion = minor;
    version->dwPlatformId = VER_PLATFORM_WIN32_NT;
    return TRUE;
}

HANDLE GetCurrentProcess() { return INVALID_HANDLE_VALUE; }

DWORD GetCurrentProcessId() { return static_cast<DWORD>(getpid()); }
