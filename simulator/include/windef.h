// The basic types of the Win32 API with their Windows sizes: DWORD and LONG have 32 bits, message
// parameters and handles are as wide as a pointer. Wide characters are the compiler's own.
#pragma once

#include <stddef.h>
#include <stdint.h>

#define WINAPI
#define CALLBACK
#define APIENTRY
#ifndef __stdcall  // which the preprocessor of resource scripts may have
#define __stdcall
#endif

using BYTE = uint8_t;
using WORD = uint16_t;
using DWORD = uint32_t;
using UINT = unsigned int;
using INT = int;
using LONG = int32_t;
using CHAR = char;
using BOOL = int;
using INT_PTR = intptr_t;
using UINT_PTR = uintptr_t;
using LONG_PTR = intptr_t;
using ULONG_PTR = uintptr_t;
using DWORD_PTR = uintptr_t;
using LCID = DWORD;
using COLORREF = DWORD;
using REGSAM = DWORD;
using HRESULT = LONG;
using LSTATUS = LONG;
using WPARAM = UINT_PTR;
using LPARAM = LONG_PTR;
using LRESULT = LONG_PTR;

using PVOID = void*;
using LPVOID = void*;
using LPCVOID = const void*;
using LPBYTE = BYTE*;
using PUINT = UINT*;
using PDWORD = DWORD*;
using LPDWORD = DWORD*;
using LPSTR = char*;
using LPCSTR = const char*;
using LPCWSTR = const wchar_t*;

#ifndef TRUE
#define TRUE 1
#endif
#ifndef FALSE
#define FALSE 0
#endif
#define MAX_PATH 260

#define MAKEWORD(low, high) \
    ((WORD)(((BYTE)((DWORD_PTR)(low)&0xff)) | ((WORD)((BYTE)((DWORD_PTR)(high)&0xff))) << 8))
#define MAKELONG(low, high) \
    ((LONG)(((WORD)((DWORD_PTR)(low)&0xffff)) | ((DWORD)((WORD)((DWORD_PTR)(high)&0xffff))) << 16))
#define MAKELPARAM(low, high) ((LPARAM)(DWORD)MAKELONG(low, high))
#define LOWORD(value) ((WORD)((DWORD_PTR)(value)&0xffff))
#define HIWORD(value) ((WORD)(((DWORD_PTR)(value) >> 16) & 0xffff))

// Each kind of handle is a pointer type of its own, so that the compiler distinguishes them.
#define DECLARE_HANDLE(name) \
    struct name##__;         \
    using name = name##__*

using HANDLE = void*;
using HGDIOBJ = void*;
DECLARE_HANDLE(HWND);
DECLARE_HANDLE(HINSTANCE);
DECLARE_HANDLE(HICON);
DECLARE_HANDLE(HMENU);
DECLARE_HANDLE(HKEY);
DECLARE_HANDLE(HDC);
DECLARE_HANDLE(HBITMAP);
DECLARE_HANDLE(HBRUSH);
DECLARE_HANDLE(HPEN);
DECLARE_HANDLE(HMONITOR);
using HMODULE = HINSTANCE;
using HCURSOR = HICON;
using HLOCAL = HANDLE;
using PHKEY = HKEY*;
using PHANDLE = HANDLE*;

using FARPROC = INT_PTR(WINAPI*)();

struct FILETIME {
    DWORD dwLowDateTime;
    DWORD dwHighDateTime;
};
using PFILETIME = FILETIME*;
using LPFILETIME = FILETIME*;

struct POINT {
    LONG x;
    LONG y;
};
using LPPOINT = POINT*;

struct RECT {
    LONG left;
    LONG top;
    LONG right;
    LONG bottom;
};
using LPRECT = RECT*;

struct GUID {
    DWORD Data1;
    WORD Data2;
    WORD Data3;
    BYTE Data4[8];
};
