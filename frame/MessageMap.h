// Passes a message of the window manager to the object that handles it.
#pragma once

#include <windows.h>

#include <new>
#include <utility>

// The base of dialogs and controls.
class CMessageMap {
public:
    // Handles a message. True: handled, and `result` is the answer.
    virtual BOOL ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                      LRESULT& result) = 0;
    virtual ~CMessageMap() = default;

protected:
    // Called by the window procedure. False: the default procedure is to be called.
    //
    // No exception may pass through the window manager. If a handler runs out of memory, its
    // message counts as handled, with 0 as the answer, since the handler has begun.
    BOOL Dispatch(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
        const BOOL outer = std::exchange(m_bMsgHandled, TRUE);  // handlers nest
        BOOL taken = TRUE;
        try {
            taken = ProcessWindowMessage(window, message, wParam, lParam, result);
        } catch (const std::bad_alloc&) {
            result = 0;
        }
        return std::exchange(m_bMsgHandled, outer) && taken;
    }

    // Whether the present message is handled. If a handler clears it, the default procedure is
    // called too.
    BOOL m_bMsgHandled = FALSE;
};
