// Tokens, privileges and the restart that needs one of them. The user holds SeShutdownPrivilege; as
// on Windows it is disabled when the process begins.
#include "kernel/shutdown.h"

#include <atomic>
#include <cstring>

#include "simulator/journal.h"
#include "core/waiting.h"
#include "kernel/kernel_object.h"
#include "core/last_error.h"

namespace {

struct Token : win32::KernelObject {
    explicit Token(DWORD access) : access(access) {}
    const char* Kind() const override { return "token"; }

    const DWORD access;
};

std::atomic<bool> g_mayShutDown{false};

constexpr LUID kShutdownPrivilege = {19, 0};

std::vector<win32::Shutdown>& Requests() {
    static std::vector<win32::Shutdown> requests;
    return requests;
}

}  // namespace

const std::vector<win32::Shutdown>& win32::RequestedShutdowns() { return Requests(); }

void win32::ForgetShutdowns() { Requests().clear(); }

BOOL OpenProcessToken(HANDLE, DWORD access, PHANDLE token) {
    if (win32::MustFail<"OpenProcessToken">()) return FALSE;
    *token = win32::NewHandle(std::make_shared<Token>(access));
    return TRUE;
}

BOOL LookupPrivilegeValueA(LPCSTR, LPCSTR name, PLUID luid) {
    if (win32::MustFail<"LookupPrivilegeValueA">()) return FALSE;
    if (std::strcmp(name, SE_SHUTDOWN_NAME) != 0)
        return win32::Fail(ERROR_NO_SUCH_PRIVILEGE, FALSE);
    *luid = kShutdownPrivilege;
    return TRUE;
}

BOOL AdjustTokenPrivileges(HANDLE handle, BOOL disableAll, PTOKEN_PRIVILEGES privileges, DWORD,
                           PTOKEN_PRIVILEGES former, PDWORD formerSize) {
    if (win32::MustFail<"AdjustTokenPrivileges">()) return FALSE;
    const auto token = win32::ObjectOf<Token>(handle);
    if (!token) return FALSE;
    if (!(token->access & TOKEN_ADJUST_PRIVILEGES)) return win32::Fail(ERROR_ACCESS_DENIED, FALSE);
    if (disableAll) g_mayShutDown = false;
    for (DWORD i = 0; !disableAll && i < privileges->PrivilegeCount; ++i)
        if (privileges->Privileges[i].Luid.LowPart == kShutdownPrivilege.LowPart)
            g_mayShutDown = privileges->Privileges[i].Attributes & SE_PRIVILEGE_ENABLED;
    if (former) former->PrivilegeCount = 0;
    if (formerSize) *formerSize = sizeof(DWORD);
    SetLastError(ERROR_SUCCESS);
    return TRUE;
}

BOOL ExitWindowsEx(UINT flags, DWORD reason) {
    if (win32::MustFail<"ExitWindowsEx", "flags">(flags)) return FALSE;
    if (!g_mayShutDown) return win32::Fail(ERROR_PRIVILEGE_NOT_HELD, FALSE);
    {
        const auto lock = simulator::LockState();
        Requests().push_back({flags, reason});
    }
    simulator::Record({simulator::EventKind::kRebootRequested, flags, "", ""});
    return TRUE;
}
