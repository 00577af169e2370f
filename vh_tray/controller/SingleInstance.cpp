#include "controller/SingleInstance.h"

HANDLE g_hInstanceMutex = nullptr;

namespace {

// Later systems have the name space Global, which all sessions of the machine share.
constexpr DWORD kLastSystemWithoutSessions = 4;

// The small letter in "4a36" is part of the interface, do not correct.
constexpr char kName[] = "Global\\HLXVHTRAY_{5D1C7E20-9B44-4a36-A1F7-3C6E08D2B7F9}";
constexpr DWORD kPrefixLength = 7;

DWORD SystemMajorVersion() {
    OSVERSIONINFOEXA version{};
    version.dwOSVersionInfoSize = sizeof version;
    GetVersionExA(reinterpret_cast<OSVERSIONINFOA*>(&version));
    return version.dwMajorVersion;
}

}  // namespace

bool IsAnotherInstanceRunning() {
    const bool hasSessions = SystemMajorVersion() > kLastSystemWithoutSessions;
    g_hInstanceMutex = CreateMutexA(nullptr, FALSE, hasSessions ? kName : kName + kPrefixLength);
    return !g_hInstanceMutex || GetLastError() == ERROR_ALREADY_EXISTS;
}
