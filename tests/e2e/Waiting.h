// The applet runs in a process of its own and has no way to say that it is done, so what it does is
// awaited: a condition is looked at until it holds, or until its time is up.
#pragma once

#include <windows.h>

// Longer than a pass of the applet's file watchers, which is 5000 ms, and what follows it.
constexpr DWORD kPassLimitMs = 9000;
// For what the applet does at once.
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
