// One run of vh_tray.exe, from outside: its hidden window, its icons and its exit code.
#pragma once

#include <windows.h>
#include <string>
#include <vector>

#include "Dialog.h"
#include "Screen.h"
#include "Waiting.h"

enum TrayIcon : UINT { kHealthIcon = 10053, kUpdatesIcon, kInstalledIcon, kDownloadsIcon };

enum MenuCommand : WORD { kShowHealth = 32778, kAbout, kExit, kReassess };

// The folder of the test program, where the applet and its companions lie too, with a backslash.
std::string ProgramFolder();

class Applet {
public:
    // Starts the program and waits for its window. A process that ends before it has one is a
    // finished run without a window.
    explicit Applet(const std::string& program = ProgramFolder() + "vh_tray.exe");
    // Closes the window and waits for the end; one that does not end fails the test and is killed.
    ~Applet();
    Applet(const Applet&) = delete;
    Applet& operator=(const Applet&) = delete;

    HWND Window() const { return window_; }
    bool Running() const { return WaitForSingleObject(process_, 0) == WAIT_TIMEOUT; }

    // The exit code, or STILL_ACTIVE when the program has not ended within the limit.
    DWORD AwaitExit(DWORD limitMs) const;

    // Does the shell show this icon of the applet?
    bool Shows(TrayIcon icon) const;
    bool AwaitIcon(TrayIcon icon, DWORD limitMs) const {
        return WaitFor([&] { return Shows(icon); }, limitMs);
    }
    bool AwaitNoIcon(TrayIcon icon, DWORD limitMs) const {
        return WaitFor([&] { return !Shows(icon); }, limitMs);
    }

    // What the shell posts when the user double-clicks an icon.
    void DoubleClick(TrayIcon icon) const;
    // What it posts when the health icon is clicked with the right button; gives the menu.
    HWND OpenMenu() const;
    HWND AwaitMenu() const { return AwaitWindow(processId_, "#32768"); }
    // Types the letter of an item into the open menu; true when that has closed it.
    bool ChooseFromMenu(char letter) const;
    // The command of an item, without the menu.
    void Choose(WORD command) const { PostMessageA(window_, WM_COMMAND, command, 0); }

    // The visible dialogs and message boxes with this caption.
    std::vector<HWND> Dialogs(const char* caption) const {
        return WindowsOf(processId_, kDialogClass, caption);
    }
    // The one such dialog, as soon as it is there.
    Dialog AwaitDialog(const char* caption, DWORD limitMs = kPromptLimitMs) const {
        return Dialog(AwaitWindow(processId_, kDialogClass, caption, limitMs));
    }
    // Waits for an icon and double-clicks it.
    Dialog OpenDialog(TrayIcon icon, const char* caption) const;

private:
    static constexpr char kDialogClass[] = "#32770";

    HANDLE process_ = nullptr;
    DWORD processId_ = 0;
    HWND window_ = nullptr;
};
