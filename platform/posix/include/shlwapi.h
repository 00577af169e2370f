// The version that a library of the shell tells of itself.
#pragma once

#include "windef.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct _DLLVERSIONINFO {
    DWORD cbSize;
    DWORD dwMajorVersion;
    DWORD dwMinorVersion;
    DWORD dwBuildNumber;
    DWORD dwPlatformID;
} DLLVERSIONINFO;

typedef HRESULT(CALLBACK* DLLGETVERSIONPROC)(DLLVERSIONINFO*);

#ifdef __cplusplus
}
#endif
