// The simulated desktop as its user has it: what stands there, and the hands.
//
// The applet runs on threads of its own (see session.h); whoever looks or acts does so from another
// one. Each look and each hand first waits until all of the applet's threads are at rest, so a test
// reads from top to bottom although dialogs, boxes and menus nest. A hand returns when the applet
// has come to rest again after it. There is one desktop in a process.
#pragma once

#include <windows.h>

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "machine/journal.h"

namespace desktop {

// ---- What stands there ----

struct Icon {
    UINT id;
    UINT image;  // number of the icon resource, 0 for none
    std::string tip;
    std::string balloonTitle;
    std::string balloonText;  // of the balloon raised last
    DWORD balloonKind;        // NIIF_...
    int balloons;             // raised since the icon was added
    UINT version;             // what the applet asked for with NIM_SETVERSION, 0 before
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
    int width;       // pixels
    Arrow arrow;     // as the header draws it
    HBITMAP bitmap;  // a picture beside the title, or null
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
    bool isDefault;  // the button that Enter presses
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

std::vector<std::string> Pages();  // what ShellExecuteA was given to open
std::vector<Reboot> Reboots();     // what ExitWindowsEx was asked for
std::string Foreground();          // caption of the window brought forward last, "" for none
int Beeps();
int WaitCursors();  // how often the wait cursor was put up

// ---- What has happened ----

using machine::Event;
using machine::EventKind;

// Everything since the process began or Forget was called.
std::vector<Event> Journal();
// Forgets the journal, pages, reboots, beeps and wait cursors.
void Forget();

// Calls `subscriber` with each event, in order, on the thread on which it happens. It must neither
// look at the desktop nor act on it. Null ends the subscription.
void Subscribe(std::function<void(const Event&)> subscriber);

// ---- The hands ----

// Whether there was something to act on; if not, why not, in a few words.
struct Outcome {
    std::string whyNot;

    explicit operator bool() const { return whyNot.empty(); }
};

// Where the pointer is from now on; may lie on no monitor.
void MovePointer(int x, int y);

// The pointer moves over the icon, and the shell tells the applet.
Outcome MoveOver(UINT icon);
// Clicks on an icon, where the pointer stands. They close an open menu first.
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
Outcome CloseWindow(HWND window = nullptr);        // the close box
Outcome PressKey(int key, HWND window = nullptr);  // VK_RETURN or VK_ESCAPE
Outcome ClickHeader(int column, HWND window = nullptr);

// The user logs off: every top-level window without an owner is asked to close.
Outcome LogOff();

// A message to the applet's first window, as another program of the desktop can post it.
Outcome Post(UINT message, WPARAM wParam, LPARAM lParam);
inline Outcome PostCommand(UINT command) { return Post(WM_COMMAND, command, 0); }

// ---- Time ----

// Moves the held clock on; all that falls due on the way has been done when it returns.
void Advance(std::chrono::milliseconds span);

// For the real clock: waits until `met` holds, which it tries after each event of the journal and
// after each 50 ms. False: the time ran out.
bool WaitUntil(const std::function<bool()>& met, std::chrono::milliseconds limit);

}  // namespace desktop
