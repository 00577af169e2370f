// Pointer, screen and the sizes that the system sets.
#include "machine/waits.h"
#include "src/last_error.h"
#include "src/user/desk.h"

using namespace user;

namespace {

// There is one monitor.
const auto kMonitor = reinterpret_cast<HMONITOR>(UINT_PTR{0x10001});

bool Contains(const RECT& rect, POINT point) {
    return point.x >= rect.left && point.x < rect.right && point.y >= rect.top &&
           point.y < rect.bottom;
}

}  // namespace

BOOL WINAPI GetCursorPos(LPPOINT point) {
    if (win32::Refused("GetCursorPos")) return FALSE;
    const machine::WorldLock lock = machine::LockWorld();
    *point = TheDesk().pointer;
    return TRUE;
}

int WINAPI GetSystemMetrics(int index) {
    switch (index) {
        case SM_CXSCREEN:
            return TheDesk().screen.right;
        case SM_CYSCREEN:
            return TheDesk().screen.bottom;
        case SM_CXICON:
        case SM_CYICON:
            return 32;
        case SM_CXSMICON:
        case SM_CYSMICON:
            return 16;
    }
    win32::NotImplemented("GetSystemMetrics with this index");
    return 0;
}

// Strikes with the action as detail.
BOOL WINAPI SystemParametersInfoA(UINT action, UINT, PVOID data, UINT) {
    if (win32::Refused("SystemParametersInfoA", action)) return FALSE;
    if (action != SPI_GETMOUSEHOVERWIDTH && action != SPI_GETMOUSEHOVERHEIGHT) {
        win32::NotImplemented("SystemParametersInfoA with this action");
        return FALSE;
    }
    constexpr UINT kHoverPixels = 4;
    *static_cast<UINT*>(data) = kHoverPixels;
    return TRUE;
}

HMONITOR WINAPI MonitorFromPoint(POINT point, DWORD flags) {
    const machine::WorldLock lock = machine::LockWorld();
    if (Contains(TheDesk().screen, point)) return kMonitor;
    return flags == MONITOR_DEFAULTTONULL ? nullptr : kMonitor;
}

BOOL WINAPI GetMonitorInfoA(HMONITOR monitor, LPMONITORINFO info) {
    if (win32::Refused("GetMonitorInfoA")) return FALSE;
    if (monitor != kMonitor || info->cbSize != sizeof *info) return FALSE;
    const machine::WorldLock lock = machine::LockWorld();
    info->rcMonitor = TheDesk().screen;
    info->rcWork = TheDesk().workArea;
    info->dwFlags = MONITORINFOF_PRIMARY;
    return TRUE;
}

BOOL WINAPI MessageBeep(UINT) {
    const machine::WorldLock lock = machine::LockWorld();
    ++TheDesk().beeps;
    return TRUE;
}
