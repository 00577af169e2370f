// A control class: a subclass of an existing window.
#pragma once

#include <windows.h>

#include "frame/MessageMap.h"
#include "frame/Reflection.h"
#include "frame/Window.h"

// The part that does not depend on the class of the control. TBase has the functions of its window.
template <class TBase>
class CWindowImplBase : public CMessageMap, public TBase {
public:
    virtual WNDPROC GetWindowProc() { return WindowProc; }
    // Called when the window has been destroyed. The object may be destroyed then.
    virtual void OnFinalMessage(HWND) {}

    // Subclasses the window, until it is destroyed.
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
        auto* self = reinterpret_cast<CWindowImplBase*>(GetWindowLongPtrA(window, GWLP_USERDATA));
        LRESULT result = 0;
        if (!self->Dispatch(window, message, wParam, lParam, result))
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

// The traits of a class that requires no style.
struct CControlWinTraits {};

// T derives from this. TWinTraits has the styles of its windows.
template <class T, class TBase = CWindow, class TWinTraits = CControlWinTraits>
class CWindowImpl : public CWindowImplBase<TBase> {
public:
    using WinTraits = TWinTraits;
};
