// A dialog or message box of another process, as its user sees it.
#pragma once

#include <windows.h>
#include <commctrl.h>
#include <memory>
#include <string>

#include "Screen.h"

// A report list of another process. The list's messages carry pointers, so their records and texts
// are put into that process's memory.
class RemoteList {
public:
    explicit RemoteList(HWND list);

    int Rows() const { return Ask(list_, LVM_GETITEMCOUNT); }
    int Columns() const { return Ask(Header(), HDM_GETITEMCOUNT); }
    std::string Title(int column) const;
    std::string Cell(int row, int column) const;
    int Width(int column) const { return Ask(list_, LVM_GETCOLUMNWIDTH, column); }
    // The width of a text in the list's font, in pixels.
    int WidthOf(const std::string& text) const;
    // Does the header show a sort arrow here, be it the control's own or a picture?
    bool HasArrow(int column) const;
    int Selected() const { return Ask(list_, LVM_GETNEXTITEM, -1, LVNI_SELECTED); }
    // A click of the left button on a column's header.
    void ClickHeader(int column) const;

private:
    struct Page;  // one page of the other process's memory
    static int Ask(HWND window, UINT message, int item = 0, LPARAM parameter = 0) {
        return static_cast<int>(
            SendMessageA(window, message, static_cast<WPARAM>(item), parameter));
    }
    HWND Header() const;

    HWND list_;
    std::shared_ptr<Page> page_;
};

class Dialog {
public:
    explicit Dialog(HWND window) : window_(window) {}

    HWND Window() const { return window_; }
    bool Open() const { return IsWindow(window_); }
    bool AwaitEnd() const;

    HWND Control(int id) const { return GetDlgItem(window_, id); }
    std::string Text(int id) const { return TextOf(Control(id)); }
    bool Shows(int id) const { return IsWindowVisible(Control(id)); }
    RemoteList List() const;

    // Presses a button and waits until the dialog has gone.
    bool Press(int id) const;
    // As its close box does.
    bool Close() const;

private:
    HWND window_;
};
