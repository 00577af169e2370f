// The access token of the process, and the privileges that are enabled in it.
#pragma once

#include <windows.h>

// The privileges to enable in a token: none or one.
class CTokenPrivileges {
public:
    virtual ~CTokenPrivileges() = default;

    // False if the system has no such privilege.
    bool Add(LPCSTR name, DWORD attributes) {
        auto& [luid, itsAttributes] = m_privileges.Privileges[0];
        if (!LookupPrivilegeValueA(nullptr, name, &luid)) return false;
        itsAttributes = attributes;
        m_privileges.PrivilegeCount = 1;
        return true;
    }

    TOKEN_PRIVILEGES* Get() { return &m_privileges; }

private:
    TOKEN_PRIVILEGES m_privileges{};
};

// Owns the handle of the token.
class CAccessToken {
public:
    CAccessToken() = default;
    virtual ~CAccessToken() {
        if (m_hToken) CloseHandle(m_hToken);
    }
    CAccessToken(const CAccessToken&) = delete;
    CAccessToken& operator=(const CAccessToken&) = delete;

    // Call it once.
    bool GetProcessToken(DWORD access) {
        return OpenProcessToken(GetCurrentProcess(), access, &m_hToken);
    }

    // False if the system refuses. True if the system does not have the privilege.
    bool EnablePrivilege(LPCSTR name) {
        CTokenPrivileges wanted;
        return !wanted.Add(name, SE_PRIVILEGE_ENABLED) ||
               AdjustTokenPrivileges(m_hToken, FALSE, wanted.Get(), 0, nullptr, nullptr);
    }

private:
    HANDLE m_hToken = nullptr;
};
