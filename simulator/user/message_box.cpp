// Message boxes: dialogs that need no template.
#include "core/last_error.h"
#include "user/dialog_state.h"

namespace user {
namespace {

// The close box and Escape press the only button of an MB_OK box.
INT_PTR CALLBACK BoxProc(HWND box, UINT message, WPARAM wParam, LPARAM) {
    if (message == WM_INITDIALOG) return TRUE;
    if (message != WM_COMMAND) return FALSE;
    if (LOWORD(wParam) == IDOK || LOWORD(wParam) == IDCANCEL) End(Lookup(box), IDOK);
    return TRUE;
}

WindowPtr MakeBox(HWND owner, LPCSTR text, LPCSTR caption, UINT type) {
    constexpr RECT kPlace{300, 250, 724, 400};
    constexpr RECT kText{60, 15, 410, 100};
    constexpr RECT kButton{175, 115, 250, 138};
    constexpr LONG_PTR kTextId = 0xFFFF;
    const WindowPtr box =
        Create({&kDialogClass, caption, WS_POPUP | WS_CAPTION | WS_SYSMENU,
                type & MB_TOPMOST ? DWORD{WS_EX_TOPMOST} : 0, kPlace, owner, 0, nullptr});
    auto* state = StateOf<DialogState>(box);
    state->proc = reinterpret_cast<LONG_PTR>(&BoxProc);
    state->box = BoxFacts{text, type & MB_ICONMASK};
    state->defaultButton = IDOK;
    Create({&kStaticClass, text, WS_CHILD | WS_VISIBLE, 0, kText, box->handle, kTextId, nullptr});
    Create({&kButtonClass, "OK", WS_CHILD | WS_VISIBLE | WS_TABSTOP | BS_DEFPUSHBUTTON, 0, kButton,
            box->handle, IDOK, nullptr});
    return box;
}

}  // namespace

bool IsMessageBox(const Window& window) {
    const auto* state = dynamic_cast<const DialogState*>(window.state.get());
    return state && state->box;
}

}  // namespace user

using namespace user;

int WINAPI MessageBoxA(HWND owner, LPCSTR text, LPCSTR caption, UINT type) {
    if (win32::MustFail<"MessageBoxA">()) return 0;
    if ((type & MB_TYPEMASK) != MB_OK)
        win32::NotImplemented("MessageBoxA with other buttons than OK");
    if (owner && !Lookup(owner)) return 0;
    const WindowPtr box = MakeBox(owner, text ? text : "", caption ? caption : "Error", type);
    DisableOwner(box);
    if (!InitDialog(box, 0)) return 0;
    return static_cast<int>(RunModal(box));
}
