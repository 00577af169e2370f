// Texts into a dialog's controls, with the usual sign when one cannot be set.
#pragma once

#include <windows.h>

#include <string>

template <class T>
class CWinDataExchange {
protected:
    // Puts the text into the control. If that fails: a beep, the focus to the control, and false.
    bool PutText(int id, const std::string& text) {
        const T& dialog = static_cast<const T&>(*this);
        if (dialog.SetDlgItemText(id, text.c_str())) return true;
        MessageBeep(static_cast<UINT>(-1));
        dialog.GetDlgItem(id).SetFocus();
        return false;
    }
};
