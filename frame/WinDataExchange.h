// Sets the texts of the controls of a dialog, and reports failures to the user.
#pragma once

#include <windows.h>

#include <string>

template <class T>
class CWinDataExchange {
protected:
    ~CWinDataExchange() = default;

    // Sets the text of the control. On failure, beeps, sets the focus to the control and returns
    // false.
    bool PutText(int id, const std::string& text) {
        const T& dialog = static_cast<const T&>(*this);
        if (dialog.SetDlgItemText(id, text.c_str())) return true;
        MessageBeep(static_cast<UINT>(-1));
        dialog.GetDlgItem(id).SetFocus();
        return false;
    }
};
