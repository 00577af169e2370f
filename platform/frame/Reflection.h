// Notifications on their way back: a parent hands what a control has told it to the control itself.
#pragma once

#include <windows.h>

// A reflected message has its own number plus this.
constexpr UINT kReflected = WM_USER + 0x1C00;

// For a parent. Gives false if the message is no notification of a control, or if the control has
// not taken it (its answer was zero); otherwise `result` is the control's answer.
inline bool ReflectNotification(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
    if (message != WM_NOTIFY) return false;
    const HWND control = reinterpret_cast<const NMHDR*>(lParam)->hwndFrom;
    result = SendMessageA(control, kReflected + message, wParam, lParam);
    return result != 0;
}
