// A window, and the table of all windows.
//
// A window's fields belong to the thread that created it: that thread reads and writes them without
// a lock, and the desktop reads them under the state lock while all threads are idle. The table
// itself changes under the lock, so any thread may test whether a window exists.
#pragma once

#include <windows.h>

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace user {

struct Queue;
struct Window;

// The state that a class of controls has for each window.
struct ControlState {
    virtual ~ControlState() = default;
};

struct WindowClass {
    const char* name;
    WORD atom;  // 0 for none
    WNDPROC proc;
    // Makes the state of a new window that is in the table already. May be null.
    void (*created)(Window& window);
};

struct Window {
    HWND handle = nullptr;
    const WindowClass* type = nullptr;
    WNDPROC proc = nullptr;
    std::string text;
    DWORD style = 0;
    DWORD exStyle = 0;
    LONG_PTR id = 0;
    HINSTANCE instance = nullptr;
    RECT place{};           // in the parent's coordinates, or on the screen
    HWND parent = nullptr;  // of a child window
    HWND owner = nullptr;   // of a top-level window
    std::vector<HWND> children;
    LONG_PTR userData = 0;
    bool redraws = true;
    HICON icons[2] = {};
    std::shared_ptr<Queue> queue;
    std::unique_ptr<ControlState> state;

    bool Has(DWORD bits) const { return (style & bits) == bits; }
};

using WindowPtr = std::shared_ptr<Window>;

// The existing window of that handle; null, and the last error says so, if there is none.
WindowPtr Lookup(HWND handle);

// Lookup for a caller that holds the state lock. Sets no error.
WindowPtr LookupLocked(HWND handle);

// The state that the window's class keeps, or null if the window is of another class.
template <class State>
State* StateOf(const WindowPtr& window) {
    return window ? dynamic_cast<State*>(window->state.get()) : nullptr;
}

const WindowClass* FindClass(LPCSTR nameOrAtom);

// The parameters of a new window. `place` in pixels; `parent` is the owner if the style has no
// WS_CHILD.
struct NewWindow {
    const WindowClass* type;
    std::string text;
    DWORD style;
    DWORD exStyle;
    RECT place;
    HWND parent;
    LONG_PTR id;
    HINSTANCE instance;
};
WindowPtr Create(const NewWindow& data);

// Destroys the window with those that it owns and its controls, which get their last messages.
void Destroy(const WindowPtr& window);

// The control of that id among the window's children, or null.
HWND ChildOf(const Window& window, LONG_PTR id);

// Takes every window of the calling thread out of the table, as the end of a thread does.
void DropWindowsOfThread();

// The top-level windows, front one first. The caller holds the state lock.
const std::vector<HWND>& TopLevelWindows();
void BringToFront(HWND topLevel);

// Makes a top-level window the active one: sets the focus to it, unless the focus is within it. The
// caller holds the state lock.
void Activate(HWND topLevel);

// Gives the focus to the window and returns the one that had it; null, and nothing changes, if the
// window or one around it is disabled. Null takes the focus from all windows.
HWND FocusOn(HWND window);
HWND FocusedWindow();

// All windows, controls among them. Called under the lock.
std::size_t CountWindowsLocked();

HWND RootOf(HWND window);
bool IsMessageBox(const Window& window);

// The place of a window on the screen.
RECT OnScreen(const Window& window);

// The window classes. Each is defined in the file of its behaviour.
extern const WindowClass kDialogClass;
extern const WindowClass kButtonClass;
extern const WindowClass kStaticClass;
extern const WindowClass kListViewClass;
extern const WindowClass kHeaderClass;

}  // namespace user
