// Reflection: a parent sends a notification back to the control that sent it.
#pragma once

#include <windows.h>

// A reflected message has its own number plus this.
constexpr UINT kReflected = WM_USER + 0x1C00;

// Called by a parent. False: the message is not a notification of a control, or the control has not
// handled it (its answer was zero). Otherwise `result` is the answer of the control.
inline bool ReflectNotification(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
    if (message != WM_NOTIFY) return false;
    const HWND control = reinterpret_cast<const NMHDR*>(lParam)->hwndFrom;
    result = SendMessageA(control, kReflected + message, wParam, lParam);
    return result != 0;
}
