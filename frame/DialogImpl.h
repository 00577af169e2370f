// A dialog class, created from a template in the program's resources, modeless or modal.
#pragma once

#include <windows.h>

#include <utility>

#include "frame/AppModule.h"
#include "frame/MessageMap.h"
#include "frame/Window.h"

// Attaches the object to the window that the dialog manager creates. Every dialog of the program
// has these virtual functions, in this order.
class CDialogImplBase : public CMessageMap, public CWindow {
public:
    virtual DLGPROC GetDialogProc() { return DialogProc; }
    // Called when the window has been destroyed. The object may be destroyed then.
    virtual void OnFinalMessage(HWND) {}

protected:
    // The object whose window the current thread creates; the first message of the window attaches
    // it.
    static CDialogImplBase*& DialogInCreation() {
        static thread_local CDialogImplBase* dialog = nullptr;
        return dialog;
    }

    static INT_PTR CALLBACK DialogProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        CDialogImplBase* self = FromWindow(window);
        if (!self) return FALSE;
        LRESULT result = 0;
        const BOOL handled = self->Dispatch(window, message, wParam, lParam, result);
        if (message == WM_NCDESTROY) {
            SetWindowLongPtrA(window, GWLP_USERDATA, 0);
            self->m_hWnd = nullptr;
            self->OnFinalMessage(window);
            return FALSE;
        }
        if (!handled) return FALSE;
        if (message == WM_INITDIALOG) return static_cast<INT_PTR>(result);
        SetWindowLongPtrA(window, DWLP_MSGRESULT, static_cast<LONG_PTR>(result));
        return TRUE;
    }

private:
    static CDialogImplBase* FromWindow(HWND window) {
        if (const LONG_PTR bound = GetWindowLongPtrA(window, GWLP_USERDATA))
            return reinterpret_cast<CDialogImplBase*>(bound);
        CDialogImplBase* const dialog = std::exchange(DialogInCreation(), nullptr);
        if (dialog) {
            dialog->m_hWnd = window;
            SetWindowLongPtrA(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(dialog));
            SetWindowLongPtrA(window, DWLP_DLGPROC,
                              reinterpret_cast<LONG_PTR>(dialog->GetDialogProc()));
        }
        return dialog;
    }
};

// T::IDD is the number of the template.
template <class T>
class CDialogImpl : public CDialogImplBase {
public:
    // Creates a modeless dialog. WM_INITDIALOG has been handled when it returns. Null: not created,
    // or destroyed by that handler.
    HWND Create(HWND owner) {
        DialogInCreation() = this;
        CreateDialogParamA(_Module.GetModuleInstance(), MAKEINTRESOURCEA(T::IDD), owner, DialogProc,
                           0);
        DialogInCreation() = nullptr;
        return m_hWnd;
    }

    // Runs a modal dialog and returns the result given to EndDialog.
    INT_PTR DoModal(HWND owner) {
        DialogInCreation() = this;
        const INT_PTR result = DialogBoxParamA(_Module.GetModuleInstance(),
                                               MAKEINTRESOURCEA(T::IDD), owner, DialogProc, 0);
        DialogInCreation() = nullptr;
        return result;
    }

    BOOL EndDialog(INT_PTR result) { return ::EndDialog(m_hWnd, result); }
};
