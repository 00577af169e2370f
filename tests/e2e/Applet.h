// One run of vh_tray.exe, seen from outside: its hidden window, its icons and its exit code.
#pragma once

#include "Screen.h"

enum TrayIcon : UINT { kHealthIcon = 10053, kUpdatesIcon, kInstalledIcon, kDownloadsIcon };

enum MenuCommand : WORD { kShowHealth = 32778, kAbout, kExit, kReassess };

class Applet {
public:
    // Starts the program and waits for its window. If the process ends first, the run has ended
    // without a window.
    Applet();
    // Closes the window, unless the process has ended, and waits for the end of the process. If it
    // does not end, the test fails and the process is terminated.
    ~Applet();
    Applet(const Applet&) = delete;
    Applet& operator=(const Applet&) = delete;

    HWND Window() const { return window_; }

    // The exit code, or STILL_ACTIVE if the program has not ended within the limit.
    DWORD AwaitExit(DWORD limitMs) const;

    // The objects of its process: kernel handles, USER and GDI objects, which Wine does not count,
    // and windows without a parent.
    struct Handles {
        DWORD kernel, user, gdi, windows;
        bool operator==(const Handles&) const = default;
    };
    Handles CountHandles() const;

    // Whether the shell shows this icon of the applet.
    bool Shows(TrayIcon icon) const;
    // Waits until the icon is shown, or removed.
    bool AwaitIcon(TrayIcon icon, bool shown = true) const {
        return WaitFor([&] { return Shows(icon) == shown; }, kPassLimitMs);
    }

    // Posts the message of the shell for a double-click on an icon.
    void DoubleClick(TrayIcon icon) const;
    // Posts the messages of a right click on the health icon; returns the menu.
    HWND OpenMenu() const;
    HWND AwaitMenu() const { return AwaitWindow(processId_, "#32768", nullptr, kPromptLimitMs); }
    // Types the access key of an item into the open menu. True if the menu has closed.
    bool ChooseFromMenu(char letter) const;
    // Posts the command of an item, without the menu.
    void Choose(WORD command) const { PostMessageA(window_, WM_COMMAND, command, 0); }

    // The visible dialogs and message boxes with this caption.
    std::vector<HWND> Dialogs(const char* caption) const {
        return WindowsOf(processId_, kDialogClass, caption);
    }
    // Waits for the only dialog with this caption.
    HWND AwaitDialog(const char* caption) const {
        return AwaitWindow(processId_, kDialogClass, caption, kPassLimitMs);
    }
    // Waits for an icon and double-clicks it.
    HWND OpenDialog(TrayIcon icon, const char* caption) const;

private:
    static constexpr char kDialogClass[] = "#32770";

    HANDLE process_ = nullptr;
    DWORD processId_ = 0;
    HWND window_ = nullptr;
};
