// Tokens, privileges and the restart that needs them. The user of a POSIX machine is granted every
// privilege that is asked for, since nothing is done with them.
#include "src/shutdown.h"

#include <cstring>

#include "machine/journal.h"
#include "machine/waits.h"
#include "src/kernel_object.h"
#include "src/last_error.h"

namespace {

struct Token : win32::KernelObject {};

constexpr LUID kShutdownPrivilege = {19, 0};

std::vector<win32::Shutdown>& Requests() {
    static std::vector<win32::Shutdown> requests;
    return requests;
}

}  // namespace

const std::vector<win32::Shutdown>& win32::RequestedShutdowns() { return Requests(); }

void win32::ForgetShutdowns() { Requests().clear(); }

BOOL OpenProcessToken(HANDLE, DWORD, PHANDLE token) {
    if (win32::Refused("OpenProcessToken")) return FALSE;
    *token = win32::NewHandle(std::make_shared<Token>());
    return TRUE;
}

BOOL LookupPrivilegeValueA(LPCSTR, LPCSTR name, PLUID luid) {
    if (win32::Refused("LookupPrivilegeValueA")) return FALSE;
    if (std::strcmp(name, SE_SHUTDOWN_NAME) != 0)
        return win32::Fail(ERROR_NO_SUCH_PRIVILEGE, FALSE);
    *luid = kShutdownPrivilege;
    return TRUE;
}

BOOL AdjustTokenPrivileges(HANDLE token, BOOL, PTOKEN_PRIVILEGES, DWORD, PTOKEN_PRIVILEGES former,
                           PDWORD formerSize) {
    if (win32::Refused("AdjustTokenPrivileges")) return FALSE;
    if (!win32::ObjectOf<Token>(token)) return FALSE;
    if (former) former->PrivilegeCount = 0;
    if (formerSize) *formerSize = sizeof(DWORD);
    SetLastError(ERROR_SUCCESS);
    return TRUE;
}

BOOL ExitWindowsEx(UINT flags, DWORD reason) {
    if (win32::Refused("ExitWindowsEx", flags)) return FALSE;
    {
        const auto lock = machine::LockWorld();
        Requests().push_back({flags, reason});
    }
    machine::Record({machine::EventKind::kRebootRequested, flags, "", ""});
    return TRUE;
}
