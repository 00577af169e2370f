// Version blocks of programs, libraries and compiled resource scripts.
#pragma once

#include "windef.h"

// For resource scripts
#define VS_VERSION_INFO 1
#define VS_FFI_FILEFLAGSMASK 0x0000003F
#define VOS__WINDOWS32 0x00000004
#define VOS_NT_WINDOWS32 0x00040004
#define VFT_APP 1
#define VFT_DLL 2
#define VFT2_UNKNOWN 0

struct VS_FIXEDFILEINFO {
    DWORD dwSignature;
    DWORD dwStrucVersion;
    DWORD dwFileVersionMS;
    DWORD dwFileVersionLS;
    DWORD dwProductVersionMS;
    DWORD dwProductVersionLS;
    DWORD dwFileFlagsMask;
    DWORD dwFileFlags;
    DWORD dwFileOS;
    DWORD dwFileType;
    DWORD dwFileSubtype;
    DWORD dwFileDateMS;
    DWORD dwFileDateLS;
};

DWORD WINAPI GetFileVersionInfoSizeA(LPCSTR path, LPDWORD handle);
// `size` must be at least what GetFileVersionInfoSizeA gave.
BOOL WINAPI GetFileVersionInfoA(LPCSTR path, DWORD handle, DWORD size, LPVOID block);
// The returned pointer points into the block. Lengths of texts are in characters, the final
// NUL among them.
BOOL WINAPI VerQueryValueA(LPCVOID block, LPCSTR subBlock, LPVOID* value, PUINT length);
