#include "Applet.h"

#include <shellapi.h>
#include <gtest/gtest.h>

namespace {

constexpr UINT kTrayCallback = 10053;
constexpr DWORD kStartLimitMs = 20000;
constexpr DWORD kExitLimitMs = 15000;

struct WindowSearch {
    DWORD processId;
    std::string windowClass;
    std::vector<HWND> found;
};

std::string ClassOf(HWND window) {
    char name[64] = "";
    GetClassNameA(window, name, sizeof name);
    return name;
}

BOOL CALLBACK CollectWindow(HWND window, LPARAM parameter) {
    auto& search = *reinterpret_cast<WindowSearch*>(parameter);
    DWORD processId = 0;
    GetWindowThreadProcessId(window, &processId);
    if (processId == search.processId && ClassOf(window) == search.windowClass)
        search.found.push_back(window);
    return TRUE;
}

std::vector<HWND> WindowsOf(DWORD processId, const std::string& windowClass) {
    WindowSearch search{processId, windowClass, {}};
    EnumWindows(CollectWindow, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

constexpr char kDialogClass[] = "#32770";
constexpr char kMenuClass[] = "#32768";

}  // namespace

std::string ProgramFolder() {
    char path[MAX_PATH];
    GetModuleFileNameA(nullptr, path, MAX_PATH);
    const std::string text = path;
    return text.substr(0, text.rfind('\\') + 1);
}

Applet::Applet(const std::string& program) {
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
    WaitFor(
        [this] {
            for (HWND window : WindowsOf(processId_, kDialogClass))
                if (TextOf(window) == "hlx_vh_tray") window_ = window;
            return window_ || !Running();
        },
        kStartLimitMs);
}

Applet::~Applet() {
    if (!process_) return;
    if (Running() && window_) PostMessageA(window_, WM_CLOSE, 0, 0);
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

bool Applet::Shows(TrayIcon icon) const {
    NOTIFYICONDATAA record{};
    record.cbSize = NOTIFYICONDATAA_V3_SIZE;
    record.hWnd = window_;
    record.uID = icon;
    return Shell_NotifyIconA(NIM_MODIFY, &record);
}

bool Applet::AwaitIcon(TrayIcon icon, DWORD limitMs) const {
    return WaitFor([&] { return Shows(icon); }, limitMs);
}

bool Applet::AwaitNoIcon(TrayIcon icon, DWORD limitMs) const {
    return WaitFor([&] { return !Shows(icon); }, limitMs);
}

void Applet::DoubleClick(TrayIcon icon) const {
    for (LPARAM mouse : {WM_LBUTTONDOWN, WM_LBUTTONUP, WM_LBUTTONDBLCLK, WM_LBUTTONUP})
        PostMessageA(window_, kTrayCallback, icon, mouse);
}

void Applet::RightClick(TrayIcon icon) const {
    for (LPARAM mouse : {WM_RBUTTONDOWN, WM_RBUTTONUP})
        PostMessageA(window_, kTrayCallback, icon, mouse);
}

void Applet::ChooseFromMenu(char letter) const {
    RightClick(kHealthIcon);
    EXPECT_TRUE(WaitFor([this] { return Menu() != nullptr; }, kPromptLimitMs));
    PostMessageA(window_, WM_CHAR, static_cast<WPARAM>(letter), 0);
}

std::vector<HWND> Applet::Dialogs(const std::string& caption) const {
    std::vector<HWND> dialogs;
    for (HWND window : WindowsOf(processId_, kDialogClass))
        if (IsWindowVisible(window) && TextOf(window) == caption) dialogs.push_back(window);
    return dialogs;
}

Dialog Applet::AwaitDialog(const std::string& caption, DWORD limitMs) const {
    std::vector<HWND> found;
    WaitFor([&] { return !(found = Dialogs(caption)).empty(); }, limitMs);
    EXPECT_EQ(found.size(), 1u) << caption;
    return Dialog(found.empty() ? nullptr : found.front());
}

HWND Applet::Menu() const {
    for (HWND window : WindowsOf(processId_, kMenuClass))
        if (IsWindowVisible(window)) return window;
    return nullptr;
}
