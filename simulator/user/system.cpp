// Pointer, screen and the system metrics.
#include "core/waiting.h"
#include "core/last_error.h"
#include "user/desktop_state.h"

void user::Beep() {
    const simulator::StateLock lock = simulator::LockState();
    ++TheDesktop().beeps;
}

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
    if (win32::MustFail<"GetCursorPos">()) return FALSE;
    const simulator::StateLock lock = simulator::LockState();
    *point = TheDesktop().pointer;
    return TRUE;
}

int WINAPI GetSystemMetrics(int index) {
    switch (index) {
        case SM_CXSCREEN:
            return TheDesktop().screen.right;
        case SM_CYSCREEN:
            return TheDesktop().screen.bottom;
        case SM_CXICON:
        case SM_CYICON:
            return 32;
        case SM_CXSMICON:
        case SM_CYSMICON:
            return 16;
    }
    win32::NotImplemented("GetSystemMetrics with index " + std::to_string(index));
}

BOOL WINAPI SystemParametersInfoA(UINT action, UINT, PVOID data, UINT) {
    if (win32::MustFail<"SystemParametersInfoA", "action">(action)) return FALSE;
    if (action != SPI_GETMOUSEHOVERWIDTH && action != SPI_GETMOUSEHOVERHEIGHT)
        win32::NotImplemented("SystemParametersInfoA with action " + std::to_string(action));
    constexpr UINT kHoverPixels = 4;
    *static_cast<UINT*>(data) = kHoverPixels;
    return TRUE;
}

HMONITOR WINAPI MonitorFromPoint(POINT point, DWORD flags) {
    const simulator::StateLock lock = simulator::LockState();
    if (Contains(TheDesktop().screen, point)) return kMonitor;
    return flags == MONITOR_DEFAULTTONULL ? nullptr : kMonitor;
}

BOOL WINAPI GetMonitorInfoA(HMONITOR monitor, LPMONITORINFO info) {
    if (win32::MustFail<"GetMonitorInfoA">()) return FALSE;
    if (monitor != kMonitor || info->cbSize != sizeof *info) return FALSE;
    const simulator::StateLock lock = simulator::LockState();
    info->rcMonitor = TheDesktop().screen;
    info->rcWork = TheDesktop().workArea;
    info->dwFlags = MONITORINFOF_PRIMARY;
    return TRUE;
}

BOOL WINAPI MessageBeep(UINT) {
    if (win32::MustFail<"MessageBeep">()) return FALSE;
    Beep();
    return TRUE;
}
