// The applet runs in another process and cannot report that it is idle. So the tests poll a
// condition until it is true or a time limit is reached.
#pragma once

#include <windows.h>

// Longer than a pass of the file watchers, which takes 5000 ms, and its effect.
constexpr DWORD kPassLimitMs = 9000;
// For effects without a delay.
constexpr DWORD kPromptLimitMs = 4000;

template <typename Condition>
bool WaitFor(Condition holds, DWORD limitMs) {
    const ULONGLONG end = GetTickCount64() + limitMs;
    while (!holds()) {
        if (GetTickCount64() >= end) return false;
        Sleep(20);
    }
    return true;
}
