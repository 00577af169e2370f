#include "SingleInstance.h"

#include <string>

HANDLE g_hInstanceMutex = nullptr;

namespace {

// Systems above this one have a name space that spans the sessions of the machine.
constexpr DWORD kLastSystemWithoutSessions = 4;

DWORD SystemMajorVersion() {
    OSVERSIONINFOEXA version{};
    version.dwOSVersionInfoSize = sizeof version;
    GetVersionExA(reinterpret_cast<OSVERSIONINFOA*>(&version));
    return version.dwMajorVersion;
}

}  // namespace

bool IsAnotherInstanceRunning() {
    std::string name = "HLXVHTRAY_{5D1C7E20-9B44-4a36-A1F7-3C6E08D2B7F9}";
    if (SystemMajorVersion() > kLastSystemWithoutSessions) name.insert(0, "Global\\");
    g_hInstanceMutex = CreateMutexA(nullptr, FALSE, name.c_str());
    return !g_hInstanceMutex || GetLastError() == ERROR_ALREADY_EXISTS;
}
