// The keyboard focus, the active window, and which windows receive input.
//
// One window of the desktop has the focus; the top-level window around it is the active one.
#include <utility>

#include "simulator/journal.h"
#include "core/last_error.h"
#include "core/waiting.h"
#include "user/desktop_state.h"
#include "user/window.h"

namespace user {
namespace {

// Whether the window and its parents are enabled.
bool TakesInput(WindowPtr window) {
    while (window && !window->Has(WS_DISABLED)) window = LookupLocked(window->parent);
    return !window;
}

}  // namespace

void Activate(HWND topLevel) {
    HWND& focus = TheDesktop().focus;
    if (RootOf(focus) != topLevel) focus = topLevel;
}

HWND FocusOn(HWND handle) {
    const WindowPtr window = handle ? Lookup(handle) : nullptr;
    const simulator::StateLock lock = simulator::LockState();
    if (handle && (!window || !TakesInput(window))) return nullptr;
    return std::exchange(TheDesktop().focus, handle);
}

HWND FocusedWindow() {
    const simulator::StateLock lock = simulator::LockState();
    return TheDesktop().focus;
}

}  // namespace user

using namespace user;

HWND WINAPI SetFocus(HWND handle) {
    if (win32::MustFail<"SetFocus">()) return nullptr;
    return FocusOn(handle);
}

HWND WINAPI GetFocus(void) { return FocusedWindow(); }

BOOL WINAPI SetForegroundWindow(HWND handle) {
    if (win32::MustFail<"SetForegroundWindow">()) return FALSE;
    const WindowPtr window = Lookup(handle);
    if (!window) return FALSE;
    {
        const simulator::StateLock lock = simulator::LockState();
        const HWND root = RootOf(handle);
        BringToFront(root);
        Activate(root);
        TheDesktop().foregroundCaption = window->text;
    }
    simulator::Record({simulator::EventKind::kBroughtForward, 0, window->text, ""});
    return TRUE;
}

// A window that is disabled loses the focus, its controls do not.
BOOL WINAPI EnableWindow(HWND handle, BOOL enable) {
    const WindowPtr window = Lookup(handle);
    if (!window) return FALSE;
    const simulator::StateLock lock = simulator::LockState();
    const BOOL wasDisabled = window->Has(WS_DISABLED);
    if (enable)
        window->style &= ~static_cast<DWORD>(WS_DISABLED);
    else
        window->style |= WS_DISABLED;
    if (!enable && TheDesktop().focus == handle) TheDesktop().focus = nullptr;
    return wasDisabled;
}

BOOL WINAPI IsWindowEnabled(HWND handle) {
    const WindowPtr window = Lookup(handle);
    return window && !window->Has(WS_DISABLED);
}
