// The dialog manager: dialogs from templates, modeless and modal, and the keyboard in them.
#include <utility>

#include "core/waiting.h"
#include "core/last_error.h"
#include "user/desktop_state.h"
#include "user/dialog_state.h"
#include "user/queue.h"
#include "user/template.h"

namespace user {
namespace {

// Pixels of the average character of a dialog's font; four and eight units make one.
constexpr int kBaseWidth = 6;
constexpr int kBaseHeight = 13;

int Rounded(int units, int base, int unitsPerBase) {
    return (units * base + unitsPerBase / 2) / unitsPerBase;
}

RECT ToPixels(const UnitRect& units) {
    const int left = Rounded(units.x, kBaseWidth, 4);
    const int top = Rounded(units.y, kBaseHeight, 8);
    return {left, top, left + Rounded(units.width, kBaseWidth, 4),
            top + Rounded(units.height, kBaseHeight, 8)};
}

const WindowClass* ClassOf(const ControlTemplate& control) {
    constexpr WORD kButtonCode = 0x80;
    constexpr WORD kStaticCode = 0x82;
    if (const auto* name = std::get_if<std::string>(&control.className))
        return FindClass(name->c_str());
    const WORD code = std::get<WORD>(control.className);
    if (code == kButtonCode) return &kButtonClass;
    if (code == kStaticCode) return &kStaticClass;
    return nullptr;
}

bool IsPushButton(const WindowPtr& window) {
    const DWORD kind = window ? window->style & BS_TYPEMASK : 0;
    return window && window->type == &kButtonClass &&
           (kind == BS_PUSHBUTTON || kind == BS_DEFPUSHBUTTON);
}

bool MakeControls(const WindowPtr& dialog, const DialogTemplate& from) {
    for (const ControlTemplate& control : from.controls) {
        const WindowClass* type = ClassOf(control);
        if (!type) return win32::Fail(ERROR_CANNOT_FIND_WND_CLASS, false);
        const WindowPtr made =
            Create({type, control.text, control.style | WS_CHILD, control.exStyle,
                    ToPixels(control.place), dialog->handle, control.id, dialog->instance});
        if (IsPushButton(made) && (control.style & BS_TYPEMASK) == BS_DEFPUSHBUTTON)
            StateOf<DialogState>(dialog)->defaultButton = control.id;
    }
    return true;
}

HWND FirstTabStop(const Window& dialog) {
    for (const HWND child : dialog.children) {
        const WindowPtr control = Lookup(child);
        if (control->Has(WS_TABSTOP | WS_VISIBLE) && !control->Has(WS_DISABLED)) return child;
    }
    return nullptr;
}

// The dialog with its controls, hidden. Null and the last error: not made.
WindowPtr Make(HINSTANCE instance, LPCSTR name, HWND owner, DLGPROC proc) {
    const auto from = LoadDialogTemplate(instance, name);
    if (!from) return win32::Fail(ERROR_RESOURCE_NAME_NOT_FOUND, nullptr);
    if (owner && !Lookup(owner)) return nullptr;
    const WindowPtr dialog = Create({&kDialogClass, from->caption, from->style & ~WS_VISIBLE,
                                     from->exStyle, ToPixels(from->place), owner, 0, instance});
    StateOf<DialogState>(dialog)->proc = reinterpret_cast<LONG_PTR>(proc);
    if (MakeControls(dialog, *from)) return dialog;
    Destroy(dialog);
    return nullptr;
}

bool IsVisibleTemplate(HINSTANCE instance, LPCSTR name) {
    const auto from = LoadDialogTemplate(instance, name);
    return from && (from->style & WS_VISIBLE);
}

void ReenableOwner(const Window& dialog, DialogState& state) {
    if (std::exchange(state.reenablesOwner, false)) EnableWindow(dialog.owner, TRUE);
}

// The default button. SetFocus does not make another button the default one.
LRESULT DefaultButton(HWND dialog) {
    const LRESULT answer = SendMessageA(dialog, DM_GETDEFID, 0, 0);
    return HIWORD(answer) == DC_HASDEFID ? LOWORD(answer) : IDOK;
}

void SendKeyCommand(HWND dialog, LRESULT id) {
    const HWND button = ChildOf(*Lookup(dialog), id);
    if (button && !IsWindowEnabled(button)) {
        Beep();
        return;
    }
    SendMessageA(dialog, WM_COMMAND, MAKELONG(id, BN_CLICKED), reinterpret_cast<LPARAM>(button));
}

// These answers of a dialog procedure are the result itself, all others are in DWLP_MSGRESULT.
bool AnswersDirectly(UINT message) {
    return message == WM_INITDIALOG || message == WM_COMPAREITEM || message == WM_VKEYTOITEM ||
           message == WM_CHARTOITEM ||
           (message >= WM_CTLCOLORMSGBOX && message <= WM_CTLCOLORSTATIC);
}

LRESULT DefaultOfDialog(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* state = StateOf<DialogState>(Lookup(dialog));
    switch (message) {
        case WM_CLOSE: {
            const HWND cancel = ChildOf(*Lookup(dialog), IDCANCEL);
            if (cancel && !IsWindowEnabled(cancel))
                Beep();
            else
                Post(dialog, WM_COMMAND, MAKELONG(IDCANCEL, BN_CLICKED),
                     reinterpret_cast<LPARAM>(cancel));
            return 0;
        }
        case DM_GETDEFID:
            return state->defaultButton ? MAKELONG(state->defaultButton, DC_HASDEFID) : 0;
    }
    return DefWindowProcA(dialog, message, wParam, lParam);
}

}  // namespace

const WindowClass kDialogClass = {"#32770", 32770, DefDlgProcA, [](Window& window) {
                                      window.state = std::make_unique<DialogState>();
                                  }};

bool InitDialog(const WindowPtr& dialog, LPARAM parameter) {
    const HWND first = FirstTabStop(*dialog);
    const LRESULT setsFocus =
        SendMessageA(dialog->handle, WM_INITDIALOG, reinterpret_cast<WPARAM>(first), parameter);
    if (!IsWindow(dialog->handle)) return false;
    if (setsFocus && first) FocusOn(first);
    return true;
}

void DisableOwner(const WindowPtr& dialog) {
    if (!dialog->owner) return;
    EnableWindow(dialog->owner, FALSE);
    StateOf<DialogState>(dialog)->reenablesOwner = true;
}

INT_PTR RunModal(const WindowPtr& dialog) {
    auto* state = StateOf<DialogState>(dialog);
    if (!state->result) ShowWindow(dialog->handle, SW_SHOW);
    RunModalLoop([&] { return LookupLocked(dialog->handle) && !state->result; },
                 [&](MSG& message) { return IsDialogMessageA(dialog->handle, &message) != 0; });
    const INT_PTR result = state->result.value_or(0);
    if (IsWindow(dialog->handle)) {
        ReenableOwner(*dialog, *state);
        Destroy(dialog);
    }
    return result;
}

// The dialog is hidden at once; it is destroyed when its loop runs again.
void End(const WindowPtr& dialog, INT_PTR result) {
    auto* state = StateOf<DialogState>(dialog);
    state->result = result;
    ReenableOwner(*dialog, *state);
    ShowWindow(dialog->handle, SW_HIDE);
    const simulator::StateLock lock = simulator::LockState();
    simulator::NotifyStateChanged();
}

}  // namespace user

using namespace user;

HWND WINAPI CreateDialogParamA(HINSTANCE instance, LPCSTR name, HWND owner, DLGPROC proc,
                               LPARAM parameter) {
    if (win32::MustFail<"CreateDialogParamA">()) return nullptr;
    const WindowPtr dialog = Make(instance, name, owner, proc);
    if (!dialog || !InitDialog(dialog, parameter)) return nullptr;
    if (IsVisibleTemplate(instance, name)) ShowWindow(dialog->handle, SW_SHOW);
    return dialog->handle;
}

INT_PTR WINAPI DialogBoxParamA(HINSTANCE instance, LPCSTR name, HWND owner, DLGPROC proc,
                               LPARAM parameter) {
    if (win32::MustFail<"DialogBoxParamA">()) return -1;
    const WindowPtr dialog = Make(instance, name, owner, proc);
    if (!dialog) return -1;
    DisableOwner(dialog);
    if (!InitDialog(dialog, parameter)) return 0;
    return RunModal(dialog);
}

BOOL WINAPI EndDialog(HWND handle, INT_PTR result) {
    const WindowPtr dialog = Lookup(handle);
    if (!StateOf<DialogState>(dialog)) return FALSE;
    End(dialog, result);
    return TRUE;
}

HWND WINAPI GetDlgItem(HWND dialog, int id) {
    if (win32::MustFail<"GetDlgItem", "id of the control">(id)) return nullptr;
    const WindowPtr window = Lookup(dialog);
    if (!window) return nullptr;
    const HWND control = ChildOf(*window, id);
    return control ? control : win32::Fail(ERROR_CONTROL_ID_NOT_FOUND, nullptr);
}

BOOL WINAPI SetDlgItemTextA(HWND dialog, int id, LPCSTR text) {
    if (win32::MustFail<"SetDlgItemTextA", "id of the control">(id)) return FALSE;
    const WindowPtr window = Lookup(dialog);
    const HWND control = window ? ChildOf(*window, id) : nullptr;
    if (!control) return win32::Fail(ERROR_CONTROL_ID_NOT_FOUND, FALSE);
    return SendMessageA(control, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text)) != 0;
}

// Enter and Escape become commands; any other message to the dialog or its controls is dispatched.
BOOL WINAPI IsDialogMessageA(HWND dialog, LPMSG message) {
    if (!message->hwnd || (message->hwnd != dialog && !IsChild(dialog, message->hwnd)))
        return FALSE;
    if (message->message == WM_KEYDOWN && message->wParam == VK_RETURN) {
        SendKeyCommand(dialog, DefaultButton(dialog));
    } else if (message->message == WM_KEYDOWN && message->wParam == VK_ESCAPE) {
        SendKeyCommand(dialog, IDCANCEL);
    } else {
        TranslateMessage(message);
        DispatchMessageA(message);
    }
    return TRUE;
}

LRESULT WINAPI DefDlgProcA(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
    const WindowPtr dialog = Lookup(handle);
    auto* state = StateOf<DialogState>(dialog);
    if (!state) return 0;
    state->messageResult = 0;
    const auto proc = reinterpret_cast<DLGPROC>(state->proc);
    const INT_PTR answer = proc ? proc(handle, message, wParam, lParam) : FALSE;
    if (AnswersDirectly(message)) return answer;
    return answer ? state->messageResult : DefaultOfDialog(handle, message, wParam, lParam);
}
