#include "Applet.h"

#include <shellapi.h>
#include <winternl.h>

namespace {

constexpr UINT kTrayCallback = 10053;
constexpr DWORD kStartLimitMs = 20000;
constexpr DWORD kExitLimitMs = 15000;

}  // namespace

Applet::Applet() {
    const std::string program = ProgramFolder() + "vh_tray.exe";
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION information{};
    if (!CreateProcessA(program.c_str(), nullptr, nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                        &startup, &information)) {
        ADD_FAILURE() << program << " does not start: " << GetLastError();
        return;
    }
    CloseHandle(information.hThread);
    process_ = information.hProcess;
    processId_ = information.dwProcessId;
    const auto startedOrEnded = [this] {
        const HWND window = FindWindowA(kDialogClass, "hlx_vh_tray");
        if (ProcessOf(window) == processId_) window_ = window;
        return window_ || AwaitExit(0) != STILL_ACTIVE;
    };
    WaitFor(startedOrEnded, kStartLimitMs);
    // It answers once it has started its watchers.
    SendMessageA(window_, WM_NULL, 0, 0);
}

Applet::~Applet() {
    if (!process_) return;
    if (window_) PostMessageA(window_, WM_CLOSE, 0, 0);
    if (AwaitExit(kExitLimitMs) == STILL_ACTIVE) {
        ADD_FAILURE() << "the applet did not end";
        TerminateProcess(process_, 99);
    }
    CloseHandle(process_);
}

DWORD Applet::AwaitExit(DWORD limitMs) const {
    WaitForSingleObject(process_, limitMs);
    DWORD code = STILL_ACTIVE;
    GetExitCodeProcess(process_, &code);
    return code;
}

Applet::Handles Applet::CountHandles() const {
    Handles handles{0, GetGuiResources(process_, GR_USEROBJECTS),
                    GetGuiResources(process_, GR_GDIOBJECTS), 0};
    // GetProcessHandleCount is not implemented by Wine.
    std::vector<char> list(1 << 20);
    NtQuerySystemInformation(SystemProcessInformation, list.data(), ULONG(list.size()), nullptr);
    for (const char* at = list.data();;) {
        const auto* const process = reinterpret_cast<const SYSTEM_PROCESS_INFORMATION*>(at);
        if (process->UniqueProcessId == ULongToHandle(processId_))
            handles.kernel = process->HandleCount;
        if (process->NextEntryOffset == 0) break;
        at += process->NextEntryOffset;
    }
    for (HWND at = nullptr; (at = FindWindowExA(nullptr, at, nullptr, nullptr));)
        handles.windows += ProcessOf(at) == processId_;
    return handles;
}

bool Applet::Shows(TrayIcon icon) const {
    NOTIFYICONDATAA record{};
    record.cbSize = NOTIFYICONDATAA_V3_SIZE;
    record.hWnd = window_;
    record.uID = icon;
    return Shell_NotifyIconA(NIM_MODIFY, &record);
}

void Applet::DoubleClick(TrayIcon icon) const {
    for (LPARAM mouse : {WM_LBUTTONDOWN, WM_LBUTTONUP, WM_LBUTTONDBLCLK, WM_LBUTTONUP})
        PostMessageA(window_, kTrayCallback, icon, mouse);
}

HWND Applet::OpenMenu() const {
    for (LPARAM mouse : {WM_RBUTTONDOWN, WM_RBUTTONUP})
        PostMessageA(window_, kTrayCallback, kHealthIcon, mouse);
    return AwaitMenu();
}

bool Applet::ChooseFromMenu(char letter) const {
    const HWND menu = AwaitMenu();
    PostMessageA(window_, WM_CHAR, static_cast<WPARAM>(letter), 0);
    return AwaitEnd(menu);
}

HWND Applet::OpenDialog(TrayIcon icon, const char* caption) const {
    EXPECT_TRUE(AwaitIcon(icon));
    DoubleClick(icon);
    return AwaitDialog(caption);
}
