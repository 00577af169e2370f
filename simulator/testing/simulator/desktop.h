// The simulated desktop: inspection and user input.
//
// The applet runs on threads of its own (see session.h); inspection and input are called on another
// thread. Each call first waits until all of the applet's threads are idle, so a test reads from
// top to bottom although dialogs, boxes and menus nest. An input function returns when the applet
// is idle again. There is one desktop in a process.
#pragma once

#include <windows.h>

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/journal.h"

namespace desktop {

// ---- Inspection ----

struct Icon {
    UINT id;
    UINT image;  // number of the icon resource, 0 for none
    std::string tip;
    std::string balloonTitle;
    std::string balloonText;  // of the balloon raised last
    DWORD balloonKind;        // NIIF_...
    int balloons;             // raised since the icon was added
    UINT version;             // set by NIM_SETVERSION, 0 before
};

// In the order in which they were added.
std::vector<Icon> Icons();
std::optional<Icon> FindIcon(UINT id);

struct Box {
    HWND window;
    std::string caption;
    std::string text;
    UINT icon;  // MB_ICON..., 0 for none
    bool topmost;
    std::vector<std::string> buttons;  // without the '&' of their keys
};

// Front one first.
std::vector<Box> Boxes();

enum class Arrow { kNone, kUp, kDown };

struct Column {
    std::string title;
    int width;                   // pixels
    Arrow arrow;                 // as the header draws it
    HBITMAP bitmap;              // a picture beside the title, or null
    std::vector<POINT> drawing;  // corners of the polygon in the picture
};

struct List {
    std::vector<Column> columns;
    std::vector<std::vector<std::string>> rows;  // a cell for each column
    std::optional<int> selected;
    std::optional<int> focused;
    bool redraws;  // false between WM_SETREDRAW 0 and 1
    DWORD exStyle;
};

struct Control {
    int id;
    std::string className;
    std::string text;  // without the '&' of its key
    RECT place;        // pixels, within the dialog
    bool visible;
    bool enabled;
    bool isDefault;  // the default button
    bool focused;
    std::optional<List> list;  // of a list view
};

struct Dialog {
    HWND window;
    std::string caption;
    RECT place;    // pixels, on the screen; of a page, within its sheet
    bool enabled;  // false while a box or dialog that it owns waits for an answer
    std::vector<Control> controls;
    std::vector<Dialog> pages;  // child dialogs that are visible

    const Control* Find(int id) const;
    // The first list view, null if there is none.
    const List* FirstList() const;
};

// The visible dialogs, front one first, message boxes apart.
std::vector<Dialog> Dialogs();
std::optional<Dialog> FindDialog(std::string_view caption);

struct MenuItem {
    UINT id;
    std::string text;  // without the '&' of its key
    bool isDefault;
};

struct Menu {
    POINT place;
    std::vector<MenuItem> items;
};

std::optional<Menu> OpenMenu();

struct Reboot {
    UINT flags;
    DWORD reason;
};

std::vector<std::string> Pages();  // the arguments of ShellExecuteA
std::vector<Reboot> Reboots();     // the requests to ExitWindowsEx
std::string Foreground();          // caption of the window brought forward last, "" for none
int Beeps();
int WaitCursors();  // how often the wait cursor was set

// ---- Events ----

using simulator::Event;
using simulator::EventKind;

// Everything since the process began or Forget was called.
std::vector<Event> Journal();
// Forgets the journal, pages, reboots, beeps and wait cursors.
void Forget();

// Calls `subscriber` with each event, in order, on the thread on which it happens. It must call
// neither inspection nor input. Null ends the subscription.
void Subscribe(std::function<void(const Event&)> subscriber);

// ---- User input ----

// Whether there was something to act on; if not, why not, in a few words.
struct Outcome {
    std::string whyNot;

    explicit operator bool() const { return whyNot.empty(); }
};

// Where the pointer is from now on; may lie on no monitor.
void MovePointer(int x, int y);

// The pointer moves over the icon, and the shell notifies the applet.
Outcome MoveOver(UINT icon);
// Clicks on an icon, at the place of the pointer. They close an open menu first.
Outcome Click(UINT icon);
Outcome DoubleClick(UINT icon);
Outcome RightClick(UINT icon);
// One callback of the shell's, as it is.
Outcome Callback(UINT icon, UINT mouseMessage);

Outcome Choose(std::string_view item);  // text of the menu item, without '&'
Outcome Choose(UINT command);
Outcome DismissMenu();

// In the given dialog or box, or in the front one. A button that is hidden or disabled, or in a
// window that waits for another one, cannot be pressed.
Outcome Press(std::string_view button, HWND window = nullptr);
Outcome Press(int id, HWND window = nullptr);
Outcome CloseWindow(HWND window = nullptr);  // the close box
// VK_RETURN or VK_ESCAPE, to the window that has the focus, be it hidden or disabled; if a window
// is given, the user clicks on it first.
Outcome PressKey(int key, HWND window = nullptr);
Outcome ClickHeader(int column, HWND window = nullptr, bool rightButton = false);

// The user logs off: every top-level window without an owner gets WM_CLOSE.
Outcome LogOff();

// A message to the applet's first window, as another program of the desktop can post it.
Outcome Post(UINT message, WPARAM wParam, LPARAM lParam);
inline Outcome PostCommand(UINT command) { return Post(WM_COMMAND, command, 0); }

// ---- Time ----

// Moves the manual clock forward. Everything that is due until then has been done when it returns.
void Advance(std::chrono::milliseconds span);

// For the real clock: waits until `met` returns true. It is called after each event of the journal
// and every 50 ms. False: timeout.
bool WaitUntil(const std::function<bool()>& met, std::chrono::milliseconds limit);

}  // namespace desktop
