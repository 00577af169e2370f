// The calls of the library of a Control Panel applet.
#pragma once

#include "windef.h"

#define CPL_INIT 1
#define CPL_GETCOUNT 2
#define CPL_INQUIRE 3
#define CPL_STOP 6
#define CPL_EXIT 7
#define CPL_STARTWPARMSA 9

typedef LONG(APIENTRY* APPLET_PROC)(HWND window, UINT message, LPARAM lParam1, LPARAM lParam2);

typedef struct tagCPLINFO {
    int idIcon;
    int idName;
    int idInfo;
    LONG_PTR lData;
} CPLINFO;
