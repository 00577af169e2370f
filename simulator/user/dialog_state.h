// The state of a dialog.
#pragma once

#include <optional>
#include <string>

#include "user/window.h"

namespace user {

// What makes a dialog a message box.
struct BoxFacts {
    std::string text;
    UINT icon;  // MB_ICON...
};

struct DialogState : ControlState {
    LONG_PTR messageResult = 0;
    LONG_PTR proc = 0;  // a DLGPROC
    LONG_PTR defaultButton = 0;
    std::optional<INT_PTR> result;  // given to EndDialog
    bool reenablesOwner = false;
    std::optional<BoxFacts> box;

    UINT Answer() const { return static_cast<UINT>(result.value_or(0)); }
};

// Makes the controls, sends WM_INITDIALOG and sets the focus. The dialog is still hidden. False:
// the dialog was destroyed meanwhile.
bool InitDialog(const WindowPtr& dialog, LPARAM parameter);

// What EndDialog does.
void End(const WindowPtr& dialog, INT_PTR result);

// Runs the dialog until End, then destroys it. Its owner is disabled meanwhile.
INT_PTR RunModal(const WindowPtr& dialog);

// Disables the owner until the dialog ends; then enables it, even if it was disabled before, as
// Wine does. Called before the dialog is made ready.
void DisableOwner(const WindowPtr& dialog);

}  // namespace user
