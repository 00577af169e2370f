#include "updates/Reboot.h"

#include "frame/AccessToken.h"

bool NeedsReboot(DWORD installResult) {
    return installResult == ERROR_SUCCESS_REBOOT_INITIATED ||
           installResult == ERROR_SUCCESS_REBOOT_REQUIRED ||
           installResult == ERROR_SUCCESS_RESTART_REQUIRED;
}

bool EnableReboot() {
    CAccessToken token;
    return token.GetProcessToken(TOKEN_ADJUST_PRIVILEGES | TOKEN_QUERY) &&
           token.EnablePrivilege("SeShutdownPrivilege");
}

BOOL RebootNow() {
    return ExitWindowsEx(EWX_REBOOT | EWX_FORCE, SHTDN_REASON_FLAG_PLANNED |
                                                     SHTDN_REASON_MAJOR_APPLICATION |
                                                     SHTDN_REASON_MINOR_UPGRADE);
}
