// The way of a message from the window manager to the object that takes it.
#pragma once

#include <windows.h>

#include <new>

// True if the object has handled the message, with `result` as the answer. Nothing may unwind
// through the window manager: where memory runs out the message counts as not handled, and the
// program goes on.
template <class Window>
BOOL Dispatch(Window& object, HWND window, UINT message, WPARAM wParam, LPARAM lParam,
              LRESULT& result) {
    try {
        return object.ProcessWindowMessage(window, message, wParam, lParam, result);
    } catch (const std::bad_alloc&) {
        return FALSE;
    }
}
