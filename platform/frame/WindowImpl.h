// A control as a class: an existing window whose messages the object sees first.
#pragma once

#include <windows.h>

#include "frame/Dispatch.h"
#include "frame/Reflection.h"
#include "frame/Window.h"

template <class TBase>
class CWindowImpl : public TBase {
public:
    // Takes a message: true if it was handled, with `result` as the answer.
    virtual BOOL ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                      LRESULT& result) = 0;
    virtual ~CWindowImpl() = default;
    virtual WNDPROC GetWindowProc() { return WindowProc; }
    // The window is gone, the object may go too.
    virtual void OnFinalMessage(HWND) {}

    // Puts the object in front of the window's procedure, until the window is destroyed.
    void SubclassWindow(HWND window) {
        this->m_hWnd = window;
        SetWindowLongPtrA(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
        m_pfnSuperWindowProc = reinterpret_cast<WNDPROC>(
            SetWindowLongPtrA(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(GetWindowProc())));
    }

protected:
    LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
        return CallWindowProcA(m_pfnSuperWindowProc, this->m_hWnd, message, wParam, lParam);
    }

    static LRESULT CALLBACK WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        auto* self = reinterpret_cast<CWindowImpl*>(GetWindowLongPtrA(window, GWLP_USERDATA));
        LRESULT result = 0;
        if (!Dispatch(*self, window, message, wParam, lParam, result))
            result = IsReflected(message) ? 0 : self->DefWindowProc(message, wParam, lParam);
        if (message == WM_NCDESTROY) {
            SetWindowLongPtrA(window, GWLP_WNDPROC,
                              reinterpret_cast<LONG_PTR>(self->m_pfnSuperWindowProc));
            self->m_hWnd = nullptr;
            self->OnFinalMessage(window);
        }
        return result;
    }

private:
    static bool IsReflected(UINT message) { return message == kReflected + WM_NOTIFY; }

    WNDPROC m_pfnSuperWindowProc = nullptr;
};
