// What can be asked and done of one window: its place, text, state, fields and default behaviour.
#include "src/user/window.h"

#include <algorithm>
#include <utility>

#include "machine/journal.h"
#include "machine/waits.h"
#include "src/last_error.h"
#include "src/user/desk.h"
#include "src/user/dialog_state.h"

using namespace user;

namespace {

DWORD Flagged(DWORD style, DWORD bit, bool set) { return set ? style | bit : style & ~bit; }

POINT Origin(HWND window) {
    const machine::WorldLock lock = machine::LockWorld();
    const WindowPtr found = LookupLocked(window);
    if (!found) return {0, 0};
    const RECT place = OnScreen(*found);
    return {place.left, place.top};
}

// A dialog is told of on the desktop's journal when the user comes to see it, and when it goes.
void TellOfDialog(const Window& window, bool opened) {
    const auto* dialog = dynamic_cast<const DialogState*>(window.state.get());
    if (!dialog || window.parent) return;
    using enum machine::EventKind;
    if (dialog->box)
        machine::Record({opened ? kBoxOpened : kBoxClosed, opened ? 0u : dialog->Answer(),
                         window.text, dialog->box->text});
    else
        machine::Record({opened ? kDialogOpened : kDialogClosed, opened ? 0u : dialog->Answer(),
                         window.text, ""});
}

bool MatchesText(const Window& window, LPCSTR text) { return !text || window.text == text; }

HWND FirstMatch(const std::vector<HWND>& windows, HWND after, const WindowClass* type,
                LPCSTR text) {
    auto next = windows.begin();
    if (after) {
        next = std::find(windows.begin(), windows.end(), after);
        if (next != windows.end()) ++next;
    }
    for (; next != windows.end(); ++next) {
        const WindowPtr window = LookupLocked(*next);
        if ((!type || window->type == type) && MatchesText(*window, text)) return *next;
    }
    return nullptr;
}

}  // namespace

BOOL WINAPI ShowWindow(HWND handle, int show) {
    const WindowPtr window = Lookup(handle);
    if (!window) return FALSE;
    const bool before = window->Has(WS_VISIBLE);
    const bool now = show != SW_HIDE;
    if (before == now) return before;
    {
        const machine::WorldLock lock = machine::LockWorld();
        window->style = Flagged(window->style, WS_VISIBLE, now);
        if (now && !window->parent) BringToFront(handle);
    }
    TellOfDialog(*window, now);
    return before;
}

BOOL WINAPI EnableWindow(HWND handle, BOOL enable) {
    const WindowPtr window = Lookup(handle);
    if (!window) return FALSE;
    const BOOL wasDisabled = window->Has(WS_DISABLED);
    window->style = Flagged(window->style, WS_DISABLED, !enable);
    return wasDisabled;
}

BOOL WINAPI IsWindowEnabled(HWND handle) {
    const WindowPtr window = Lookup(handle);
    return window && !window->Has(WS_DISABLED);
}

BOOL WINAPI IsChild(HWND parent, HWND handle) {
    const machine::WorldLock lock = machine::LockWorld();
    WindowPtr window = LookupLocked(handle);
    while (window && window->parent) {
        if (window->parent == parent) return TRUE;
        window = LookupLocked(window->parent);
    }
    return FALSE;
}

HWND WINAPI GetParent(HWND handle) {
    const WindowPtr window = Lookup(handle);
    if (!window) return nullptr;
    return window->parent ? window->parent : window->owner;
}

BOOL WINAPI MoveWindow(HWND handle, int x, int y, int width, int height, BOOL) {
    const WindowPtr window = Lookup(handle);
    if (!window) return FALSE;
    window->place = {x, y, x + width, y + height};
    return TRUE;
}

BOOL WINAPI GetWindowRect(HWND handle, LPRECT rect) {
    const WindowPtr window = Lookup(handle);
    if (!window) return FALSE;
    const machine::WorldLock lock = machine::LockWorld();
    *rect = OnScreen(*window);
    return TRUE;
}

BOOL WINAPI ScreenToClient(HWND handle, LPPOINT point) {
    if (!Lookup(handle)) return FALSE;
    const POINT origin = Origin(handle);
    *point = {point->x - origin.x, point->y - origin.y};
    return TRUE;
}

BOOL WINAPI SetWindowTextA(HWND handle, LPCSTR text) {
    if (win32::Refused("SetWindowTextA")) return FALSE;
    if (!Lookup(handle)) return FALSE;
    return SendMessageA(handle, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text)) != 0;
}

HWND WINAPI SetFocus(HWND handle) {
    if (handle && !Lookup(handle)) return nullptr;
    const machine::WorldLock lock = machine::LockWorld();
    return std::exchange(TheDesk().focus, handle);
}

HWND WINAPI GetFocus(void) {
    const machine::WorldLock lock = machine::LockWorld();
    return TheDesk().focus;
}

BOOL WINAPI SetForegroundWindow(HWND handle) {
    const WindowPtr window = Lookup(handle);
    if (!window) return FALSE;
    {
        const machine::WorldLock lock = machine::LockWorld();
        const HWND root = RootOf(handle);
        BringToFront(root);
        TheDesk().foreground = root;
        TheDesk().foregroundCaption = window->text;
    }
    machine::Record({machine::EventKind::kBroughtForward, 0, window->text, ""});
    return TRUE;
}

HWND WINAPI FindWindowA(LPCSTR className, LPCSTR text) {
    return FindWindowExA(nullptr, nullptr, className, text);
}

HWND WINAPI FindWindowExA(HWND parent, HWND childAfter, LPCSTR className, LPCSTR text) {
    const WindowClass* type = className ? FindClass(className) : nullptr;
    if (className && !type) return win32::Fail(ERROR_CANNOT_FIND_WND_CLASS, nullptr);
    const WindowPtr above = parent ? Lookup(parent) : nullptr;
    if (parent && !above) return nullptr;
    const machine::WorldLock lock = machine::LockWorld();
    return FirstMatch(above ? above->children : TopLevelWindows(), childAfter, type, text);
}

LONG_PTR WINAPI GetWindowLongPtrA(HWND handle, int index) {
    const WindowPtr window = Lookup(handle);
    if (!window) return 0;
    switch (index) {
        case GWLP_WNDPROC:
            return reinterpret_cast<LONG_PTR>(window->proc);
        case GWLP_HINSTANCE:
            return reinterpret_cast<LONG_PTR>(window->instance);
        case GWLP_HWNDPARENT:
            return reinterpret_cast<LONG_PTR>(GetParent(handle));
        case GWLP_USERDATA:
            return window->userData;
        case GWLP_ID:
            return window->id;
        case GWL_STYLE:
            return static_cast<LONG_PTR>(window->style);
        case GWL_EXSTYLE:
            return static_cast<LONG_PTR>(window->exStyle);
    }
    const auto* dialog = StateOf<DialogState>(window);
    const LONG_PTR* field = dialog ? dialog->Field(index) : nullptr;
    if (!field) return win32::Fail(ERROR_INVALID_INDEX, 0);
    return *field;
}

LONG_PTR WINAPI SetWindowLongPtrA(HWND handle, int index, LONG_PTR value) {
    const WindowPtr window = Lookup(handle);
    if (!window) return 0;
    const LONG_PTR before = GetWindowLongPtrA(handle, index);
    switch (index) {
        case GWLP_WNDPROC:
            window->proc = reinterpret_cast<WNDPROC>(value);
            return before;
        case GWLP_USERDATA:
            window->userData = value;
            return before;
        case GWLP_ID:
            window->id = value;
            return before;
        case GWL_STYLE:
            window->style = static_cast<DWORD>(value);
            return before;
        case GWL_EXSTYLE:
            window->exStyle = static_cast<DWORD>(value);
            return before;
    }
    auto* dialog = StateOf<DialogState>(window);
    if (LONG_PTR* field = dialog ? dialog->Field(index) : nullptr) *field = value;
    return before;
}

LRESULT WINAPI CallWindowProcA(WNDPROC proc, HWND window, UINT message, WPARAM wParam,
                               LPARAM lParam) {
    return proc(window, message, wParam, lParam);
}

LRESULT WINAPI DefWindowProcA(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
    const WindowPtr window = Lookup(handle);
    if (!window) return 0;
    switch (message) {
        case WM_SETTEXT: {
            const auto* text = reinterpret_cast<LPCSTR>(lParam);
            window->text = text ? text : "";
            return TRUE;
        }
        case WM_SETREDRAW:
            window->redraws = wParam != 0;
            return 0;
        case WM_SETICON:
            return reinterpret_cast<LRESULT>(
                std::exchange(window->icons[wParam == ICON_BIG], reinterpret_cast<HICON>(lParam)));
        case WM_CLOSE:
            DestroyWindow(handle);
            return 0;
    }
    return 0;
}
