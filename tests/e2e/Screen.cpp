#include "Screen.h"

#include <shellapi.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <thread>

namespace {

HWND NewOwner() {
    return CreateWindowA("STATIC", "", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr);
}

Look Capture(HWND window) {
    RECT place{};
    GetWindowRect(window, &place);
    const LONG width = place.right - place.left, height = place.bottom - place.top;
    BITMAPINFO layout{};
    layout.bmiHeader = {sizeof layout.bmiHeader, width, height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};

    const HDC screen = GetDC(nullptr);
    const HDC memory = CreateCompatibleDC(screen);
    void* pixels = nullptr;
    const HBITMAP bitmap = CreateDIBSection(memory, &layout, DIB_RGB_COLORS, &pixels, nullptr, 0);
    SelectObject(memory, bitmap);
    BitBlt(memory, 0, 0, width, height, screen, place.left, place.top, SRCCOPY);
    GdiFlush();
    const Look look(static_cast<DWORD*>(pixels), static_cast<DWORD*>(pixels) + width * height);
    DeleteDC(memory);
    DeleteObject(bitmap);
    ReleaseDC(nullptr, screen);
    return look;
}

// Looks at a window of the tests: `show` shows it, on a thread that it keeps until it is closed.
Look LookOfOwn(const char* windowClass, const std::function<void()>& show, Look (*look)(HWND)) {
    std::thread user(show);
    const HWND window = AwaitWindow(GetCurrentProcessId(), windowClass);
    const Look seen = look(window);
    PostMessageA(window, WM_KEYDOWN, VK_ESCAPE, 0);
    user.join();
    return seen;
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

Look LookOf(HWND window) {
    Look look;
    // What has one colour only, or still changes, has not been painted to its end.
    const auto painted = [&] {
        const Look before = Capture(window);
        Sleep(100);
        look = Capture(window);
        return look == before &&
               std::ranges::adjacent_find(look, std::not_equal_to()) != look.end();
    };
    EXPECT_TRUE(WaitFor(painted, kPromptLimitMs)) << "there is nothing to be seen";
    return look;
}

Look LookOfPictureIn(HWND box) {
    HWND child = nullptr;
    while ((child = FindWindowExA(box, child, "STATIC", nullptr)))
        if ((GetWindowLongA(child, GWL_STYLE) & SS_TYPEMASK) == SS_ICON) break;
    return LookOf(child);
}

Look LookOfPictureInBox(UINT kind) {
    const auto show = [kind] { MessageBoxA(nullptr, "text", "caption", MB_OK | kind); };
    return LookOfOwn("#32770", show, LookOfPictureIn);
}

Look LookOfMenu(const std::vector<const char*>& items) {
    const auto show = [&items] {
        const HMENU menu = CreatePopupMenu();
        for (const char* item : items) AppendMenuA(menu, MF_STRING, 1, item);
        SetMenuDefaultItem(menu, 0, TRUE);
        POINT pointer{};
        GetCursorPos(&pointer);
        const HWND owner = NewOwner();
        TrackPopupMenu(menu, TPM_RIGHTBUTTON, pointer.x, pointer.y, 0, owner, nullptr);
        DestroyWindow(owner);
        DestroyMenu(menu);
    };
    return LookOfOwn("#32768", show, LookOf);
}
