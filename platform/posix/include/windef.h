// The basic types of the Win32 API with their Windows sizes: DWORD and LONG have 32 bits, message
// parameters and handles are as wide as a pointer. Wide characters are the compiler's own.
#pragma once

#include <cstddef>
#include <cstdint>

#define WINAPI
#define CALLBACK
#define APIENTRY
#define PASCAL
#define __stdcall
#define __cdecl
#define CONST const
#define FAR

using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using UINT = unsigned int;
using ULONG = std::uint32_t;
using USHORT = std::uint16_t;
using UCHAR = unsigned char;
using INT = int;
using LONG = std::int32_t;
using SHORT = std::int16_t;
using CHAR = char;
using WCHAR = wchar_t;
using BOOL = int;
using BOOLEAN = BYTE;
using FLOAT = float;
using LONGLONG = std::int64_t;
using ULONGLONG = std::uint64_t;
using DWORDLONG = std::uint64_t;
using INT_PTR = std::intptr_t;
using UINT_PTR = std::uintptr_t;
using LONG_PTR = std::intptr_t;
using ULONG_PTR = std::uintptr_t;
using DWORD_PTR = std::uintptr_t;
using SIZE_T = std::size_t;
using ATOM = WORD;
using LCID = DWORD;
using LANGID = WORD;
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
using PBYTE = BYTE*;
using LPBYTE = BYTE*;
using LPWORD = WORD*;
using PUINT = UINT*;
using PDWORD = DWORD*;
using LPDWORD = DWORD*;
using PLONG = LONG*;
using LPLONG = LONG*;
using LPBOOL = BOOL*;
using LPINT = int*;
using PCHAR = char*;
using LPSTR = char*;
using LPCSTR = const char*;
using PSTR = char*;
using PCSTR = const char*;
using LPWSTR = wchar_t*;
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
#define LOBYTE(value) ((BYTE)((DWORD_PTR)(value)&0xff))
#define HIBYTE(value) ((BYTE)(((DWORD_PTR)(value) >> 8) & 0xff))

// Each kind of handle is a pointer type of its own, so that the compiler tells them apart.
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
DECLARE_HANDLE(HFONT);
DECLARE_HANDLE(HRGN);
DECLARE_HANDLE(HPALETTE);
DECLARE_HANDLE(HMONITOR);
DECLARE_HANDLE(HRSRC);
DECLARE_HANDLE(HACCEL);
using HMODULE = HINSTANCE;
using HCURSOR = HICON;
using HGLOBAL = HANDLE;
using HLOCAL = HANDLE;
using PHKEY = HKEY*;
using PHANDLE = HANDLE*;

using FARPROC = INT_PTR(WINAPI*)();
using PROC = FARPROC;

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
using PPOINT = POINT*;
using LPPOINT = POINT*;

struct SIZE {
    LONG cx;
    LONG cy;
};
using LPSIZE = SIZE*;

struct RECT {
    LONG left;
    LONG top;
    LONG right;
    LONG bottom;
};
using PRECT = RECT*;
using LPRECT = RECT*;
using LPCRECT = const RECT*;

struct GUID {
    DWORD Data1;
    WORD Data2;
    WORD Data3;
    BYTE Data4[8];
};
