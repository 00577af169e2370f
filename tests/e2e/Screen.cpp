#include "Screen.h"

#include <shellapi.h>
#include <gtest/gtest.h>

#include <cstring>

namespace {

HWND NewOwner() {
    return CreateWindowA("STATIC", "", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr);
}

}  // namespace

std::string TextOf(HWND window) {
    char text[2048] = "";
    SendMessageA(window, WM_GETTEXT, sizeof text, reinterpret_cast<LPARAM>(text));
    return text;
}

DWORD ProcessOf(HWND window) {
    DWORD id = 0;
    GetWindowThreadProcessId(window, &id);
    return id;
}

std::vector<HWND> WindowsOf(DWORD processId, const char* windowClass, const char* caption) {
    std::vector<HWND> found;
    HWND window = nullptr;
    while ((window = FindWindowExA(nullptr, window, windowClass, caption)))
        if (ProcessOf(window) == processId && IsWindowVisible(window)) found.push_back(window);
    return found;
}

HWND AwaitWindow(DWORD processId, const char* windowClass, const char* caption, DWORD limitMs) {
    std::vector<HWND> found;
    WaitFor([&] { return !(found = WindowsOf(processId, windowClass, caption)).empty(); }, limitMs);
    EXPECT_EQ(found.size(), 1u) << windowClass << " " << (caption ? caption : "");
    return found.empty() ? nullptr : found.front();
}

bool AwaitBalloon(const std::string& text) {
    const DWORD shell = ProcessOf(FindWindowA("Shell_TrayWnd", nullptr));
    const auto isUp = [&] {
        for (HWND balloon : WindowsOf(shell, "tooltips_class32", nullptr))
            if (TextOf(balloon).starts_with(text)) return true;
        return false;
    };
    return WaitFor(isUp, kPassLimitMs);
}

bool BalloonsAreWindows() {
    NOTIFYICONDATAA icon{};
    icon.cbSize = NOTIFYICONDATAA_V3_SIZE;
    icon.hWnd = NewOwner();
    icon.uFlags = NIF_ICON | NIF_INFO;
    icon.hIcon = LoadIconA(nullptr, IDI_APPLICATION);
    std::strcpy(icon.szInfo, "A balloon of the tests");
    Shell_NotifyIconA(NIM_ADD, &icon);
    const bool are = AwaitBalloon(icon.szInfo);
    Shell_NotifyIconA(NIM_DELETE, &icon);
    DestroyWindow(icon.hWnd);
    return are;
}
