#include "Dialog.h"

#include "Waiting.h"

namespace {

constexpr int kList = 1000;

int Ask(HWND window, UINT message, int item, LPARAM parameter) {
    return static_cast<int>(SendMessageA(window, message, static_cast<WPARAM>(item), parameter));
}

}  // namespace

int Dialog::AskList(UINT message, int item, LPARAM parameter) const {
    return Ask(GetDlgItem(window_, kList), message, item, parameter);
}

int Dialog::AskHeader(UINT message) const {
    const HWND list = GetDlgItem(window_, kList);
    return Ask(reinterpret_cast<HWND>(SendMessageA(list, LVM_GETHEADER, 0, 0)), message, 0, 0);
}

bool Dialog::Press(int id) const {
    if (id == IDCANCEL)
        PostMessageA(window_, WM_CLOSE, 0, 0);
    else
        PostMessageA(window_, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED),
                     reinterpret_cast<LPARAM>(GetDlgItem(window_, id)));
    return WaitFor([this] { return !IsWindow(window_); }, kPromptLimitMs);
}
