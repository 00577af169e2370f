// Buttons and static texts, and the list of all classes.
#include <strings.h>

#include "user/window.h"

namespace user {
namespace {

void Click(const Window& button) {
    if (button.Has(WS_DISABLED)) return;
    FocusOn(button.handle);
    const auto command = MAKELONG(button.id, BN_CLICKED);
    SendMessageA(button.parent, WM_COMMAND, static_cast<DWORD>(command),
                 reinterpret_cast<LPARAM>(button.handle));
}

LRESULT CALLBACK ButtonProc(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message != BM_CLICK) return DefWindowProcA(handle, message, wParam, lParam);
    if (const WindowPtr button = Lookup(handle)) Click(*button);
    return 0;
}

}  // namespace

const WindowClass kButtonClass = {"Button", 0, ButtonProc, nullptr};
const WindowClass kStaticClass = {"Static", 0, DefWindowProcA, nullptr};

const WindowClass* FindClass(LPCSTR nameOrAtom) {
    const WindowClass* const classes[] = {&kDialogClass, &kButtonClass, &kStaticClass,
                                          &kListViewClass, &kHeaderClass};
    for (const WindowClass* type : classes) {
        if (IS_INTRESOURCE(nameOrAtom) ? type->atom && type->atom == LOWORD(nameOrAtom)
                                       : strcasecmp(type->name, nameOrAtom) == 0)
            return type;
    }
    return nullptr;
}

}  // namespace user
