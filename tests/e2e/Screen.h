// Finds and reads windows of any process.
#pragma once

#include <windows.h>
#include <string>
#include <vector>

#include "Waiting.h"

std::string TextOf(HWND window);
DWORD ProcessOf(HWND window);

// The visible top-level windows of a process with this class and, unless null, this caption.
std::vector<HWND> WindowsOf(DWORD processId, const char* windowClass, const char* caption);
// Waits for the only window of this kind. The test fails if there is none or more than one.
HWND AwaitWindow(DWORD processId, const char* windowClass, const char* caption = nullptr,
                 DWORD limitMs = kPromptLimitMs);

// Whether the shell shows a balloon whose text begins like this.
bool AwaitBalloon(const std::string& text);
// Some shells draw balloons without a window.
bool BalloonsAreWindows();
