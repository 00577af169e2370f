// The calls on one window: its place, text, state, fields and default behaviour.
#include "user/window.h"

#include <algorithm>
#include <utility>

#include "simulator/journal.h"
#include "core/waiting.h"
#include "core/last_error.h"
#include "user/desktop_state.h"
#include "user/dialog_state.h"

using namespace user;

namespace {

DWORD Flagged(DWORD style, DWORD bit, bool set) { return set ? style | bit : style & ~bit; }

POINT Origin(HWND window) {
    const simulator::StateLock lock = simulator::LockState();
    const WindowPtr found = LookupLocked(window);
    if (!found) return {0, 0};
    const RECT place = OnScreen(*found);
    return {place.left, place.top};
}

// Records in the journal that a dialog has become visible or has been hidden.
void RecordDialog(const Window& window, bool opened) {
    const auto* dialog = dynamic_cast<const DialogState*>(window.state.get());
    if (!dialog || window.parent) return;
    using enum simulator::EventKind;
    if (dialog->box)
        simulator::Record({opened ? kBoxOpened : kBoxClosed, opened ? 0u : dialog->Answer(),
                           window.text, dialog->box->text});
    else
        simulator::Record({opened ? kDialogOpened : kDialogClosed, opened ? 0u : dialog->Answer(),
                           window.text, ""});
}

// A top-level window becomes active when it is shown. If the active one is hidden, its owner
// becomes active, even if it is hidden or disabled.
void PassActivation(const Window& window, bool shown) {
    if (shown) {
        BringToFront(window.handle);
        Activate(window.handle);
    } else if (RootOf(TheDesktop().focus) == window.handle) {
        TheDesktop().focus = LookupLocked(window.owner) ? window.owner : nullptr;
    }
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

HWND FindWindowOf(HWND parent, HWND childAfter, LPCSTR className, LPCSTR text) {
    const WindowClass* type = className ? FindClass(className) : nullptr;
    if (className && !type) return win32::Fail(ERROR_CANNOT_FIND_WND_CLASS, nullptr);
    const WindowPtr above = parent ? Lookup(parent) : nullptr;
    if (parent && !above) return nullptr;
    const simulator::StateLock lock = simulator::LockState();
    return FirstMatch(above ? above->children : TopLevelWindows(), childAfter, type, text);
}

// The value that GetWindowLongPtrA and SetWindowLongPtrA access at an index.
LONG_PTR& FieldOf(Window& window, int index) {
    auto* dialog = dynamic_cast<DialogState*>(window.state.get());
    if (index == GWLP_USERDATA) return window.userData;
    if (dialog && index == DWLP_MSGRESULT) return dialog->messageResult;
    if (dialog && index == DWLP_DLGPROC) return dialog->proc;
    win32::NotImplemented("GetWindowLongPtrA and SetWindowLongPtrA with index " +
                          std::to_string(index));
}

// The messages for which the default procedure does nothing and returns 0.
bool HasNoDefault(UINT message) {
    constexpr UINT kMessages[] = {WM_NULL,          WM_DESTROY, WM_NCDESTROY,
                                  WM_SETTINGCHANGE, WM_NOTIFY,  WM_INITDIALOG,
                                  WM_COMMAND,       WM_TIMER,   WM_KEYDOWN};
    const bool isMouse = message >= WM_MOUSEMOVE && message <= WM_RBUTTONUP;
    return message >= WM_USER || isMouse ||
           std::find(std::begin(kMessages), std::end(kMessages), message) != std::end(kMessages);
}

}  // namespace

BOOL WINAPI ShowWindow(HWND handle, int show) {
    const WindowPtr window = Lookup(handle);
    if (!window) return FALSE;
    const bool before = window->Has(WS_VISIBLE);
    const bool now = show != SW_HIDE;
    if (before == now) return before;
    {
        const simulator::StateLock lock = simulator::LockState();
        window->style = Flagged(window->style, WS_VISIBLE, now);
        if (!window->parent) PassActivation(*window, now);
    }
    RecordDialog(*window, now);
    return before;
}

BOOL WINAPI IsChild(HWND parent, HWND handle) {
    const simulator::StateLock lock = simulator::LockState();
    WindowPtr window = LookupLocked(handle);
    while (window && window->parent) {
        if (window->parent == parent) return TRUE;
        window = LookupLocked(window->parent);
    }
    return FALSE;
}

BOOL WINAPI MoveWindow(HWND handle, int x, int y, int width, int height, BOOL) {
    if (win32::MustFail<"MoveWindow">()) return FALSE;
    const WindowPtr window = Lookup(handle);
    if (!window) return FALSE;
    window->place = {x, y, x + width, y + height};
    return TRUE;
}

BOOL WINAPI GetWindowRect(HWND handle, LPRECT rect) {
    if (win32::MustFail<"GetWindowRect">()) return FALSE;
    const WindowPtr window = Lookup(handle);
    if (!window) return FALSE;
    const simulator::StateLock lock = simulator::LockState();
    *rect = OnScreen(*window);
    return TRUE;
}

BOOL WINAPI ScreenToClient(HWND handle, LPPOINT point) {
    if (win32::MustFail<"ScreenToClient">()) return FALSE;
    if (!Lookup(handle)) return FALSE;
    const POINT origin = Origin(handle);
    *point = {point->x - origin.x, point->y - origin.y};
    return TRUE;
}

BOOL WINAPI SetWindowTextA(HWND handle, LPCSTR text) {
    if (win32::MustFail<"SetWindowTextA">()) return FALSE;
    if (!Lookup(handle)) return FALSE;
    return SendMessageA(handle, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text)) != 0;
}

HWND WINAPI FindWindowA(LPCSTR className, LPCSTR text) {
    if (win32::MustFail<"FindWindowA">()) return nullptr;
    return FindWindowOf(nullptr, nullptr, className, text);
}

HWND WINAPI FindWindowExA(HWND parent, HWND childAfter, LPCSTR className, LPCSTR text) {
    if (win32::MustFail<"FindWindowExA">()) return nullptr;
    return FindWindowOf(parent, childAfter, className, text);
}

LONG_PTR WINAPI GetWindowLongPtrA(HWND handle, int index) {
    const WindowPtr window = Lookup(handle);
    if (!window) return 0;
    if (index == GWLP_WNDPROC) return reinterpret_cast<LONG_PTR>(window->proc);
    return FieldOf(*window, index);
}

LONG_PTR WINAPI SetWindowLongPtrA(HWND handle, int index, LONG_PTR value) {
    const WindowPtr window = Lookup(handle);
    if (!window) return 0;
    if (index == GWLP_WNDPROC)
        return reinterpret_cast<LONG_PTR>(
            std::exchange(window->proc, reinterpret_cast<WNDPROC>(value)));
    return std::exchange(FieldOf(*window, index), value);
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
            Destroy(window);
            return 0;
    }
    if (!HasNoDefault(message))
        win32::NotImplemented("DefWindowProcA for message " + std::to_string(message));
    return 0;
}
