// The controller as the owner of a box, dialog, property sheet or menu.
#pragma once

#include <windows.h>

// Surrounds a modal call with a hidden owner. The end of the call activates the owner, and some
// systems enable it, so that the next key would become a command of a hidden window. The destructor
// disables the owner and takes the focus from it. The focus of any other window is not changed.
class CModalCall {
public:
    explicit CModalCall(HWND owner) : m_hOwner(owner) {}
    virtual ~CModalCall() {
        EnableWindow(m_hOwner, FALSE);
        const HWND focus = GetFocus();
        if (focus == m_hOwner || IsChild(m_hOwner, focus)) SetFocus(nullptr);
    }
    CModalCall(const CModalCall&) = delete;
    CModalCall& operator=(const CModalCall&) = delete;

private:
    const HWND m_hOwner;
};
