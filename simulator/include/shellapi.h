// The notification area and the opening of pages.
#pragma once

#include <stddef.h>

#include "windef.h"

#define NIM_ADD 0x00000000
#define NIM_MODIFY 0x00000001
#define NIM_DELETE 0x00000002
#define NIM_SETVERSION 0x00000004

#define NIF_MESSAGE 0x00000001
#define NIF_ICON 0x00000002
#define NIF_TIP 0x00000004
#define NIF_INFO 0x00000010

#define NIIF_USER 0x00000004

#define NOTIFYICON_VERSION 3
#define NIN_SELECT (0x0400 + 0)

typedef struct _NOTIFYICONDATAA {
    DWORD cbSize;
    HWND hWnd;
    UINT uID;
    UINT uFlags;
    UINT uCallbackMessage;
    HICON hIcon;
    CHAR szTip[128];
    DWORD dwState;
    DWORD dwStateMask;
    CHAR szInfo[256];
    union {
        UINT uTimeout;
        UINT uVersion;
    };
    CHAR szInfoTitle[64];
    DWORD dwInfoFlags;
    GUID guidItem;
    HICON hBalloonIcon;
} NOTIFYICONDATAA, *PNOTIFYICONDATAA;

// The record of systems without the balloon icon.
#define NOTIFYICONDATAA_V3_SIZE offsetof(NOTIFYICONDATAA, hBalloonIcon)

BOOL WINAPI Shell_NotifyIconA(DWORD message, PNOTIFYICONDATAA data);
HINSTANCE WINAPI ShellExecuteA(HWND owner, LPCSTR operation, LPCSTR file, LPCSTR parameters,
                               LPCSTR directory, int show);
