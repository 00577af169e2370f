#include "src/system.h"

#include <unistd.h>

#include <atomic>

#include "src/last_error.h"

namespace {

std::atomic<DWORD> g_major{6};
std::atomic<DWORD> g_minor{1};

}  // namespace

void win32::SetWindowsVersion(DWORD major, DWORD minor) {
    g_major = major;
    g_minor = minor;
}

BOOL GetVersionExA(LPOSVERSIONINFOA version) {
    if (win32::Refused("GetVersionExA")) return FALSE;
    if (version->dwOSVersionInfoSize < sizeof(OSVERSIONINFOA))
        return win32::Fail(ERROR_INSUFFICIENT_BUFFER, FALSE);
    version->dwMajorVersion = g_major;
    version->dwMinorVersion = g_minor;
    version->dwPlatformId = VER_PLATFORM_WIN32_NT;
    return TRUE;
}

HANDLE GetCurrentProcess() { return INVALID_HANDLE_VALUE; }

DWORD GetCurrentProcessId() { return static_cast<DWORD>(getpid()); }
