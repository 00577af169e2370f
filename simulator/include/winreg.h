// The registry: a folder tree that all processes of the user share (see registry/registry_store.h).
#pragma once

#include "windef.h"
#include "winbase.h"

#define HKEY_CURRENT_USER ((HKEY)(ULONG_PTR)0x80000001u)
#define HKEY_LOCAL_MACHINE ((HKEY)(ULONG_PTR)0x80000002u)

#define REG_NONE 0
#define REG_SZ 1
#define REG_EXPAND_SZ 2
#define REG_BINARY 3
#define REG_DWORD 4

#define KEY_READ 0x20019
#define KEY_WRITE 0x20006
#define KEY_ALL_ACCESS 0xF003F

#define REG_CREATED_NEW_KEY 1
#define REG_OPENED_EXISTING_KEY 2
#define REG_NOTIFY_CHANGE_LAST_SET 4

// All return 0 or an error number.
LONG WINAPI RegOpenKeyExA(HKEY key, LPCSTR subkey, DWORD options, REGSAM access, PHKEY result);
LONG WINAPI RegCreateKeyExA(HKEY key, LPCSTR subkey, DWORD reserved, LPSTR keyClass, DWORD options,
                            REGSAM access, LPSECURITY_ATTRIBUTES security, PHKEY result,
                            LPDWORD disposition);
// Signals a notification that is armed on the key.
LONG WINAPI RegCloseKey(HKEY key);
LONG WINAPI RegDeleteTreeA(HKEY key, LPCSTR subkey);

LONG WINAPI RegQueryValueExA(HKEY key, LPCSTR name, LPDWORD reserved, LPDWORD type, LPBYTE data,
                             LPDWORD size);
// Texts have 16-bit units.
LONG WINAPI RegQueryValueExW(HKEY key, LPCWSTR name, LPDWORD reserved, LPDWORD type, LPBYTE data,
                             LPDWORD size);
// Values are enumerated in the order of their names.
LONG WINAPI RegEnumValueA(HKEY key, DWORD index, LPSTR name, LPDWORD nameSize, LPDWORD reserved,
                          LPDWORD type, LPBYTE data, LPDWORD size);
LONG WINAPI RegQueryInfoKeyA(HKEY key, LPSTR keyClass, LPDWORD classSize, LPDWORD reserved,
                             LPDWORD subkeys, LPDWORD longestSubkey, LPDWORD longestClass,
                             LPDWORD values, LPDWORD longestName, LPDWORD longestData,
                             LPDWORD securitySize, PFILETIME lastWrite);
LONG WINAPI RegSetValueExA(HKEY key, LPCSTR name, DWORD reserved, DWORD type, const BYTE* data,
                           DWORD size);
LONG WINAPI RegDeleteValueA(HKEY key, LPCSTR name);

// Asynchronous only, and for REG_NOTIFY_CHANGE_LAST_SET only.
LONG WINAPI RegNotifyChangeKeyValue(HKEY key, BOOL subtree, DWORD filter, HANDLE event,
                                    BOOL asynchronous);
