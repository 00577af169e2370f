#include "Reboot.h"

bool NeedsReboot(DWORD installResult) {
    return installResult == ERROR_SUCCESS_REBOOT_INITIATED ||
           installResult == ERROR_SUCCESS_REBOOT_REQUIRED ||
           installResult == ERROR_SUCCESS_RESTART_REQUIRED;
}

bool EnableReboot() {
    HANDLE token = nullptr;
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_ADJUST_PRIVILEGES | TOKEN_QUERY, &token))
        return false;
    TOKEN_PRIVILEGES privileges{};
    privileges.PrivilegeCount = 1;
    privileges.Privileges[0].Attributes = SE_PRIVILEGE_ENABLED;
    // A system that does not know the privilege does not ask for it either.
    bool enabled = true;
    if (LookupPrivilegeValueA(nullptr, "SeShutdownPrivilege", &privileges.Privileges[0].Luid))
        enabled = AdjustTokenPrivileges(token, FALSE, &privileges, 0, nullptr, nullptr) != FALSE;
    CloseHandle(token);
    return enabled;
}

BOOL RebootNow() {
    return ExitWindowsEx(EWX_REBOOT | EWX_FORCE, SHTDN_REASON_FLAG_PLANNED |
                                                     SHTDN_REASON_MAJOR_APPLICATION |
                                                     SHTDN_REASON_MINOR_UPGRADE);
}
