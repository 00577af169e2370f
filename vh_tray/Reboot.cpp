#include "Reboot.h"

namespace {

// The access token of this process, for as long as the object lives.
class CAccessToken {
public:
    CAccessToken() = default;
    ~CAccessToken() {
        if (m_hToken) CloseHandle(m_hToken);
    }
    CAccessToken(const CAccessToken&) = delete;
    CAccessToken& operator=(const CAccessToken&) = delete;

    bool Open(DWORD access) { return OpenProcessToken(GetCurrentProcess(), access, &m_hToken); }

    // False if the system refuses. A privilege that it does not know need not be enabled.
    bool EnablePrivilege(LPCSTR name) {
        TOKEN_PRIVILEGES privileges{};
        privileges.PrivilegeCount = 1;
        privileges.Privileges[0].Attributes = SE_PRIVILEGE_ENABLED;
        if (!LookupPrivilegeValueA(nullptr, name, &privileges.Privileges[0].Luid)) return true;
        return AdjustTokenPrivileges(m_hToken, FALSE, &privileges, 0, nullptr, nullptr);
    }

private:
    HANDLE m_hToken = nullptr;
};

}  // namespace

bool NeedsReboot(DWORD installResult) {
    return installResult == ERROR_SUCCESS_REBOOT_INITIATED ||
           installResult == ERROR_SUCCESS_REBOOT_REQUIRED ||
           installResult == ERROR_SUCCESS_RESTART_REQUIRED;
}

bool EnableReboot() {
    CAccessToken token;
    return token.Open(TOKEN_ADJUST_PRIVILEGES | TOKEN_QUERY) &&
           token.EnablePrivilege("SeShutdownPrivilege");
}

BOOL RebootNow() {
    return ExitWindowsEx(EWX_REBOOT | EWX_FORCE, SHTDN_REASON_FLAG_PLANNED |
                                                     SHTDN_REASON_MAJOR_APPLICATION |
                                                     SHTDN_REASON_MINOR_UPGRADE);
}
