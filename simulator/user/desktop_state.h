// The state that belongs to no window: pointer, screen, icons of the notification area, open menu,
// requests to the shell. All under the state lock.
#pragma once

#include <windows.h>
#include <shellapi.h>

#include <optional>
#include <string>
#include <vector>

namespace user {

struct TrayIcon {
    HWND window;
    UINT id;
    UINT callback;
    UINT image;  // number of the icon resource
    std::string tip;
    std::string balloonTitle;
    std::string balloonText;
    DWORD balloonKind;
    int balloons;
    UINT version;
};

struct OpenMenu {
    HMENU menu;
    HWND owner;
    POINT place;
    bool closed = false;
    UINT chosen = 0;
};

struct DesktopState {
    POINT pointer{512, 384};
    RECT screen{0, 0, 1024, 768};
    RECT workArea{0, 0, 1024, 738};  // the screen without its taskbar
    HWND focus = nullptr;
    std::string foregroundCaption;
    HCURSOR cursor = nullptr;
    int waitCursors = 0;
    int beeps = 0;
    std::vector<TrayIcon> icons;
    std::optional<OpenMenu> menu;
    std::vector<std::string> pages;
};

DesktopState& TheDesktop();

// The menu that takes input, or null. A menu that the user has closed stays in the state until the
// call that shows it returns.
OpenMenu* VisibleMenu();

// What MessageBeep does.
void Beep();

// A value that no other window, menu, icon or other object of the desktop has or had. Called under
// the state lock.
UINT_PTR NewHandle();

}  // namespace user
