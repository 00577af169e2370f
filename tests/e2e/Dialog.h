// A dialog or message box of another process.
#pragma once

#include <windows.h>
#include <commctrl.h>

#include <string>

#include "Screen.h"

class Dialog {
public:
    explicit Dialog(HWND window) : window_(window) {}

    HWND Window() const { return window_; }
    std::string Text(int id) const { return TextOf(GetDlgItem(window_, id)); }

    // Sends a message without pointers to the list of the dialog, or to its header. Texts of a list
    // cannot be read from another process.
    int AskList(UINT message, int item = 0, LPARAM parameter = 0) const;
    int AskHeader(UINT message) const;

    // Presses a button and waits until the dialog has closed.
    bool Press(int id) const;
    // The same with the close box.
    bool Close() const { return Press(IDCANCEL); }

private:
    HWND window_;
};
