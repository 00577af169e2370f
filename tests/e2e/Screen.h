// The windows on the screen, of whatever process: how they are found and read, and what they look
// like.
#pragma once

#include <windows.h>
#include <string>
#include <vector>

#include "Waiting.h"

std::string TextOf(HWND window);
DWORD ProcessOf(HWND window);

// The visible top-level windows of a process with this class and, unless null, this caption.
std::vector<HWND> WindowsOf(DWORD processId, const char* windowClass, const char* caption);
// The one such window, as soon as it is there; that there is none or another fails the test.
HWND AwaitWindow(DWORD processId, const char* windowClass, const char* caption = nullptr,
                 DWORD limitMs = kPromptLimitMs);

// Does the shell raise a balloon whose text begins like this?
bool AwaitBalloon(const std::string& text);
// Some shells draw their balloons without a window that could be read.
bool BalloonsAreWindows();

// The pixels of a window that nothing covers. They tell what no message tells across processes: the
// texts of a menu and its default item, the picture in a message box.
using Look = std::vector<DWORD>;
Look LookOf(HWND window);
Look LookOfPictureIn(HWND box);

// The same of what the system shows when the tests ask it for a message box of that kind, and for
// a menu at the pointer, whose first item is the default.
Look LookOfPictureInBox(UINT kind);
Look LookOfMenu(const std::vector<const char*>& items);
