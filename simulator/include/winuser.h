// Windows, messages, dialogs, menus and the rest of the desktop.
//
// Windows of this platform have no frame: the client area is the whole window.
//
// Every function has the contract of the Win32 function of its name. A window belongs to the thread
// that created it; only PostMessageA, IsWindow and the input functions reach it from another one.
#pragma once

#include "windef.h"

typedef LRESULT(CALLBACK* WNDPROC)(HWND, UINT, WPARAM, LPARAM);
typedef INT_PTR(CALLBACK* DLGPROC)(HWND, UINT, WPARAM, LPARAM);
typedef void(CALLBACK* TIMERPROC)(HWND, UINT, UINT_PTR, DWORD);

typedef struct tagMSG {
    HWND hwnd;
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
    DWORD time;
    POINT pt;
} MSG, *LPMSG;

typedef struct tagNMHDR {
    HWND hwndFrom;
    UINT_PTR idFrom;
    UINT code;
} NMHDR;

typedef struct tagMONITORINFO {
    DWORD cbSize;
    RECT rcMonitor;
    RECT rcWork;
    DWORD dwFlags;
} MONITORINFO, *LPMONITORINFO;

#define MAKEINTRESOURCEA(i) ((LPSTR)((ULONG_PTR)((WORD)(i))))
#define IS_INTRESOURCE(r) ((((ULONG_PTR)(r)) >> 16) == 0)
#define MAKEINTATOM(i) ((LPSTR)((ULONG_PTR)((WORD)(i))))

// Resource types
#define RT_MENU MAKEINTRESOURCEA(4)
#define RT_DIALOG MAKEINTRESOURCEA(5)
#define RT_STRING MAKEINTRESOURCEA(6)
#define RT_GROUP_ICON MAKEINTRESOURCEA(14)
#define RT_MANIFEST 24  // for resource scripts, which take a plain number

// Window messages
#define WM_NULL 0x0000
#define WM_DESTROY 0x0002
#define WM_SETREDRAW 0x000B
#define WM_SETTEXT 0x000C
#define WM_CLOSE 0x0010
#define WM_QUIT 0x0012
#define WM_SETTINGCHANGE 0x001A
#define WM_VKEYTOITEM 0x002E
#define WM_CHARTOITEM 0x002F
#define WM_COMPAREITEM 0x0039
#define WM_NOTIFY 0x004E
#define WM_SETICON 0x0080
#define WM_NCDESTROY 0x0082
#define WM_KEYDOWN 0x0100
#define WM_INITDIALOG 0x0110
#define WM_COMMAND 0x0111
#define WM_TIMER 0x0113
#define WM_CTLCOLORMSGBOX 0x0132
#define WM_CTLCOLORSTATIC 0x0138
#define WM_MOUSEMOVE 0x0200
#define WM_LBUTTONDOWN 0x0201
#define WM_LBUTTONUP 0x0202
#define WM_LBUTTONDBLCLK 0x0203
#define WM_RBUTTONDOWN 0x0204
#define WM_RBUTTONUP 0x0205
#define WM_MOUSEHOVER 0x02A1
#define WM_MOUSELEAVE 0x02A3
#define WM_USER 0x0400
#define WM_APP 0x8000

#define ICON_SMALL 0
#define ICON_BIG 1

// Window styles
#define WS_POPUP 0x80000000
#define WS_CHILD 0x40000000
#define WS_VISIBLE 0x10000000
#define WS_DISABLED 0x08000000
#define WS_CAPTION 0x00C00000
#define WS_BORDER 0x00800000
#define WS_SYSMENU 0x00080000
#define WS_MINIMIZEBOX 0x00020000
#define WS_TABSTOP 0x00010000
#define WS_EX_TOPMOST 0x00000008
#define WS_EX_CLIENTEDGE 0x00000200

// Dialog styles and messages
#define DS_SETFONT 0x0040
#define DS_MODALFRAME 0x0080
#define DS_FIXEDSYS 0x0008
#define DS_CONTROL 0x0400
#define DM_GETDEFID (WM_USER + 0)
#define DC_HASDEFID 0x534B
#define DWLP_MSGRESULT 0
#define DWLP_DLGPROC ((int)(DWLP_MSGRESULT + sizeof(LRESULT)))

// Window fields
#define GWLP_WNDPROC (-4)
#define GWLP_USERDATA (-21)

// Buttons and static texts
#define BS_PUSHBUTTON 0x0000
#define BS_DEFPUSHBUTTON 0x0001
#define BS_TYPEMASK 0x000F
#define BN_CLICKED 0
#define BM_CLICK 0x00F5

#define IDOK 1
#define IDCANCEL 2
#define IDYES 6
#define IDNO 7

#define VK_RETURN 0x0D
#define VK_ESCAPE 0x1B

#define SW_HIDE 0
#define SW_SHOWNORMAL 1
#define SW_SHOW 5

#define USER_TIMER_MINIMUM 0x0000000A
#define PM_NOREMOVE 0x0000
#define PM_REMOVE 0x0001

// Messages and the queue of the thread
BOOL WINAPI GetMessageA(LPMSG message, HWND window, UINT first, UINT last);
BOOL WINAPI PeekMessageA(LPMSG message, HWND window, UINT first, UINT last, UINT remove);
BOOL WINAPI TranslateMessage(const MSG* message);
LRESULT WINAPI DispatchMessageA(const MSG* message);
BOOL WINAPI PostMessageA(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT WINAPI SendMessageA(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
void WINAPI PostQuitMessage(int exitCode);
UINT WINAPI RegisterWindowMessageA(LPCSTR name);
UINT_PTR WINAPI SetTimer(HWND window, UINT_PTR id, UINT elapse, TIMERPROC proc);
BOOL WINAPI KillTimer(HWND window, UINT_PTR id);

// Windows
BOOL WINAPI DestroyWindow(HWND window);
BOOL WINAPI IsWindow(HWND window);
BOOL WINAPI IsChild(HWND parent, HWND window);
BOOL WINAPI IsWindowEnabled(HWND window);
BOOL WINAPI ShowWindow(HWND window, int show);
BOOL WINAPI EnableWindow(HWND window, BOOL enable);
BOOL WINAPI MoveWindow(HWND window, int x, int y, int width, int height, BOOL repaint);
BOOL WINAPI GetWindowRect(HWND window, LPRECT rect);
BOOL WINAPI ScreenToClient(HWND window, LPPOINT point);
BOOL WINAPI SetWindowTextA(HWND window, LPCSTR text);
HWND WINAPI SetFocus(HWND window);
HWND WINAPI GetFocus(void);
BOOL WINAPI SetForegroundWindow(HWND window);
HWND WINAPI FindWindowA(LPCSTR className, LPCSTR text);
HWND WINAPI FindWindowExA(HWND parent, HWND childAfter, LPCSTR className, LPCSTR text);
LONG_PTR WINAPI GetWindowLongPtrA(HWND window, int index);
LONG_PTR WINAPI SetWindowLongPtrA(HWND window, int index, LONG_PTR value);
LRESULT WINAPI DefWindowProcA(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT WINAPI CallWindowProcA(WNDPROC proc, HWND window, UINT message, WPARAM wParam,
                               LPARAM lParam);

// Dialogs
HWND WINAPI CreateDialogParamA(HINSTANCE instance, LPCSTR templateName, HWND owner, DLGPROC proc,
                               LPARAM parameter);
INT_PTR WINAPI DialogBoxParamA(HINSTANCE instance, LPCSTR templateName, HWND owner, DLGPROC proc,
                               LPARAM parameter);
BOOL WINAPI EndDialog(HWND dialog, INT_PTR result);
HWND WINAPI GetDlgItem(HWND dialog, int id);
BOOL WINAPI SetDlgItemTextA(HWND dialog, int id, LPCSTR text);
BOOL WINAPI IsDialogMessageA(HWND dialog, LPMSG message);
LRESULT WINAPI DefDlgProcA(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

// Message boxes
#define MB_OK 0x00000000
#define MB_ICONHAND 0x00000010
#define MB_ICONERROR MB_ICONHAND
#define MB_ICONQUESTION 0x00000020
#define MB_ICONEXCLAMATION 0x00000030
#define MB_ICONASTERISK 0x00000040
#define MB_ICONINFORMATION MB_ICONASTERISK
#define MB_TYPEMASK 0x0000000F
#define MB_ICONMASK 0x000000F0
#define MB_TOPMOST 0x00040000
int WINAPI MessageBoxA(HWND owner, LPCSTR text, LPCSTR caption, UINT type);
BOOL WINAPI MessageBeep(UINT type);

// Menus
#define MF_POPUP 0x00000010
#define MF_END 0x00000080
#define TPM_RIGHTBUTTON 0x0002
HMENU WINAPI LoadMenuA(HINSTANCE instance, LPCSTR name);
HMENU WINAPI GetSubMenu(HMENU menu, int position);
BOOL WINAPI SetMenuDefaultItem(HMENU menu, UINT item, UINT byPosition);
BOOL WINAPI TrackPopupMenu(HMENU menu, UINT flags, int x, int y, int reserved, HWND owner,
                           const RECT* rect);
BOOL WINAPI DestroyMenu(HMENU menu);

// Strings, icons and cursors
#define IMAGE_BITMAP 0
#define IMAGE_ICON 1
#define LR_DEFAULTCOLOR 0x0000
#define LR_LOADMAP3DCOLORS 0x1000
#define IDC_WAIT MAKEINTRESOURCEA(32514)
int WINAPI LoadStringA(HINSTANCE instance, UINT id, LPSTR text, int capacity);
HANDLE WINAPI LoadImageA(HINSTANCE instance, LPCSTR name, UINT type, int width, int height,
                         UINT flags);
HICON WINAPI LoadIconA(HINSTANCE instance, LPCSTR name);
BOOL WINAPI DestroyIcon(HICON icon);
HCURSOR WINAPI LoadCursorA(HINSTANCE instance, LPCSTR name);
HCURSOR WINAPI SetCursor(HCURSOR cursor);

// Pointer, screen and system
#define SM_CXSCREEN 0
#define SM_CYSCREEN 1
#define SM_CXICON 11
#define SM_CYICON 12
#define SM_CXSMICON 49
#define SM_CYSMICON 50
#define SPI_SETNONCLIENTMETRICS 0x002A
#define SPI_GETMOUSEHOVERWIDTH 0x0062
#define SPI_GETMOUSEHOVERHEIGHT 0x0064
#define MONITOR_DEFAULTTONULL 0x00000000
#define MONITOR_DEFAULTTONEAREST 0x00000002
#define MONITORINFOF_PRIMARY 0x00000001
#define COLOR_BTNFACE 15
#define COLOR_BTNSHADOW 16
BOOL WINAPI GetCursorPos(LPPOINT point);
int WINAPI GetSystemMetrics(int index);
BOOL WINAPI SystemParametersInfoA(UINT action, UINT parameter, PVOID data, UINT winIni);
HMONITOR WINAPI MonitorFromPoint(POINT point, DWORD flags);
BOOL WINAPI GetMonitorInfoA(HMONITOR monitor, LPMONITORINFO info);
DWORD WINAPI GetSysColor(int index);
HBRUSH WINAPI GetSysColorBrush(int index);
HDC WINAPI GetDC(HWND window);
int WINAPI ReleaseDC(HWND window, HDC context);
int WINAPI FillRect(HDC context, const RECT* rect, HBRUSH brush);
