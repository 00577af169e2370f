// Processes, threads, waits, files, modules, time, errors, the event log and tokens.
#pragma once

#include <stdarg.h>

#include "windef.h"

// --- Errors and memory

#define FORMAT_MESSAGE_ALLOCATE_BUFFER 0x00000100
#define FORMAT_MESSAGE_IGNORE_INSERTS 0x00000200
#define FORMAT_MESSAGE_FROM_SYSTEM 0x00001000

DWORD WINAPI GetLastError();
void WINAPI SetLastError(DWORD error);

// Writes the system's text for `code`, ending in "\r\n", and returns its length. With
// FORMAT_MESSAGE_ALLOCATE_BUFFER `buffer` is the address of a char* that LocalFree releases.
DWORD WINAPI FormatMessageA(DWORD flags, LPCVOID source, DWORD code, DWORD language, LPSTR buffer,
                            DWORD size, va_list* arguments);
HLOCAL WINAPI LocalFree(HLOCAL memory);

int WINAPI lstrcmpA(LPCSTR left, LPCSTR right);
int WINAPI lstrcmpiA(LPCSTR left, LPCSTR right);

// --- Handles, events, mutexes and waits

#define INVALID_HANDLE_VALUE ((HANDLE)(LONG_PTR)-1)
#define INFINITE 0xFFFFFFFF
#define WAIT_OBJECT_0 0
#define WAIT_FAILED ((DWORD)0xFFFFFFFF)
#define MAXIMUM_WAIT_OBJECTS 64

struct SECURITY_ATTRIBUTES {
    DWORD nLength;
    LPVOID lpSecurityDescriptor;
    BOOL bInheritHandle;
};
using LPSECURITY_ATTRIBUTES = SECURITY_ATTRIBUTES*;

struct CRITICAL_SECTION {
    DWORD OwningThread;
    LONG RecursionCount;
};
using LPCRITICAL_SECTION = CRITICAL_SECTION*;

BOOL WINAPI CloseHandle(HANDLE handle);

HANDLE WINAPI CreateEventA(LPSECURITY_ATTRIBUTES security, BOOL manualReset, BOOL signalled,
                           LPCSTR name);
BOOL WINAPI SetEvent(HANDLE event);
BOOL WINAPI ResetEvent(HANDLE event);
// Exists to hold a name; waiting on it is not implemented.
HANDLE WINAPI CreateMutexA(LPSECURITY_ATTRIBUTES security, BOOL initiallyOwned, LPCSTR name);

DWORD WINAPI WaitForSingleObject(HANDLE handle, DWORD milliseconds);
DWORD WINAPI WaitForMultipleObjects(DWORD count, const HANDLE* handles, BOOL all,
                                    DWORD milliseconds);
void WINAPI Sleep(DWORD milliseconds);

void WINAPI InitializeCriticalSection(LPCRITICAL_SECTION section);
void WINAPI EnterCriticalSection(LPCRITICAL_SECTION section);
void WINAPI LeaveCriticalSection(LPCRITICAL_SECTION section);
void WINAPI DeleteCriticalSection(LPCRITICAL_SECTION section);

// --- Processes and threads

struct OSVERSIONINFOA {
    DWORD dwOSVersionInfoSize;
    DWORD dwMajorVersion;
    DWORD dwMinorVersion;
    DWORD dwBuildNumber;
    DWORD dwPlatformId;
    CHAR szCSDVersion[128];
};
using LPOSVERSIONINFOA = OSVERSIONINFOA*;

struct OSVERSIONINFOEXA {
    DWORD dwOSVersionInfoSize;
    DWORD dwMajorVersion;
    DWORD dwMinorVersion;
    DWORD dwBuildNumber;
    DWORD dwPlatformId;
    CHAR szCSDVersion[128];
    WORD wServicePackMajor;
    WORD wServicePackMinor;
    WORD wSuiteMask;
    BYTE wProductType;
    BYTE wReserved;
};

#define VER_PLATFORM_WIN32_NT 2

BOOL WINAPI GetVersionExA(LPOSVERSIONINFOA version);
HANDLE WINAPI GetCurrentProcess();
DWORD WINAPI GetCurrentProcessId();
DWORD WINAPI GetCurrentThreadId();
// The thread's handle is signalled at once; the thread stops at its next wait, forever, and does
// not release what it holds.
BOOL WINAPI TerminateThread(HANDLE thread, DWORD code);

// --- Files

#define GENERIC_READ 0x80000000u
#define FILE_SHARE_READ 0x00000001
#define FILE_SHARE_WRITE 0x00000002
#define OPEN_EXISTING 3
#define FILE_ATTRIBUTE_NORMAL 0x00000080
#define INVALID_FILE_SIZE ((DWORD)0xFFFFFFFF)

// Opens an existing file for reading; '\\' separates folders as '/' does. Without
// FILE_SHARE_WRITE the call fails with ERROR_SHARING_VIOLATION while any process has the file
// open for writing, and a later writer has to wait until the handle is closed.
HANDLE WINAPI CreateFileA(LPCSTR path, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security,
                          DWORD disposition, DWORD attributes, HANDLE model);
BOOL WINAPI ReadFile(HANDLE file, LPVOID buffer, DWORD size, LPDWORD read, LPVOID overlapped);
DWORD WINAPI GetFileSize(HANDLE file, LPDWORD high);
// Only the last-write time is available: the other two pointers must be null.
BOOL WINAPI GetFileTime(HANDLE file, LPFILETIME creation, LPFILETIME access, LPFILETIME write);

// --- Time

struct SYSTEMTIME {
    WORD wYear;
    WORD wMonth;
    WORD wDayOfWeek;
    WORD wDay;
    WORD wHour;
    WORD wMinute;
    WORD wSecond;
    WORD wMilliseconds;
};
using LPSYSTEMTIME = SYSTEMTIME*;

struct TIME_ZONE_INFORMATION;

void WINAPI GetSystemTime(LPSYSTEMTIME time);
void WINAPI GetLocalTime(LPSYSTEMTIME time);
void WINAPI GetSystemTimeAsFileTime(LPFILETIME time);
BOOL WINAPI FileTimeToSystemTime(const FILETIME* from, LPSYSTEMTIME to);
// `zone` must be null: the current time zone.
BOOL WINAPI SystemTimeToTzSpecificLocalTime(const TIME_ZONE_INFORMATION* zone,
                                            const SYSTEMTIME* utc, LPSYSTEMTIME local);

// --- Modules

// A name without a folder is searched beside the program first, then where the system searches.
HMODULE WINAPI LoadLibraryA(LPCSTR path);
BOOL WINAPI FreeLibrary(HMODULE module);
FARPROC WINAPI GetProcAddress(HMODULE module, LPCSTR name);
HMODULE WINAPI GetModuleHandleA(LPCSTR name);
DWORD WINAPI GetModuleFileNameA(HMODULE module, LPSTR path, DWORD size);

// --- Event log

#define EVENTLOG_ERROR_TYPE 0x0001
#define EVENTLOG_WARNING_TYPE 0x0002
#define EVENTLOG_INFORMATION_TYPE 0x0004

HANDLE WINAPI RegisterEventSourceA(LPCSTR server, LPCSTR source);
BOOL WINAPI DeregisterEventSource(HANDLE source);
BOOL WINAPI ReportEventA(HANDLE source, WORD type, WORD category, DWORD id, PVOID user,
                         WORD stringCount, DWORD dataSize, LPCSTR* strings, LPVOID data);

// --- Tokens and privileges

#define TOKEN_QUERY 0x0008
#define TOKEN_ADJUST_PRIVILEGES 0x0020
#define SE_PRIVILEGE_ENABLED 0x00000002
#define SE_SHUTDOWN_NAME "SeShutdownPrivilege"

struct LUID {
    DWORD LowPart;
    LONG HighPart;
};
using PLUID = LUID*;

struct LUID_AND_ATTRIBUTES {
    LUID Luid;
    DWORD Attributes;
};

struct TOKEN_PRIVILEGES {
    DWORD PrivilegeCount;
    LUID_AND_ATTRIBUTES Privileges[1];
};
using PTOKEN_PRIVILEGES = TOKEN_PRIVILEGES*;

BOOL WINAPI OpenProcessToken(HANDLE process, DWORD access, PHANDLE token);
BOOL WINAPI LookupPrivilegeValueA(LPCSTR system, LPCSTR name, PLUID luid);
BOOL WINAPI AdjustTokenPrivileges(HANDLE token, BOOL disableAll, PTOKEN_PRIVILEGES privileges,
                                  DWORD size, PTOKEN_PRIVILEGES former, PDWORD formerSize);

// Records the request (kernel/shutdown.h) and does nothing else.
#define EWX_REBOOT 0x00000002
#define EWX_FORCE 0x00000004
#define SHTDN_REASON_FLAG_PLANNED 0x80000000
#define SHTDN_REASON_MAJOR_APPLICATION 0x00040000
#define SHTDN_REASON_MINOR_UPGRADE 0x00000003
BOOL WINAPI ExitWindowsEx(UINT flags, DWORD reason);
