// Version blocks of programs, libraries and compiled resource scripts.
#pragma once

#include "windef.h"

#define VS_FFI_SIGNATURE 0xFEEF04BDu
#define VS_FFI_FILEFLAGSMASK 0x0000003F
#define VS_FF_DEBUG 0x00000001
#define VS_FF_PRERELEASE 0x00000002
#define VS_FF_PATCHED 0x00000004
#define VS_FF_PRIVATEBUILD 0x00000008
#define VS_FF_INFOINFERRED 0x00000010
#define VS_FF_SPECIALBUILD 0x00000020
#define VOS_UNKNOWN 0x00000000
#define VOS_DOS 0x00010000
#define VOS_NT 0x00040000
#define VOS__WINDOWS16 0x00000001
#define VOS__WINDOWS32 0x00000004
#define VOS_NT_WINDOWS32 0x00040004
#define VFT_UNKNOWN 0
#define VFT_APP 1
#define VFT_DLL 2
#define VFT_DRV 3
#define VFT_FONT 4
#define VFT_VXD 5
#define VFT_STATIC_LIB 7
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
// The pointer that comes out points into the block. Lengths of texts are in characters, the final
// NUL among them.
BOOL WINAPI VerQueryValueA(LPCVOID block, LPCSTR subBlock, LPVOID* value, PUINT length);
