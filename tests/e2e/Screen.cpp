#include "Screen.h"

namespace {

constexpr DWORD kRequestLimitMs = 15000;

const char* AssistantsFolder() { return std::getenv("VH_E2E_ASSISTANT"); }

}  // namespace

std::string ProgramFolder() {
    char path[MAX_PATH];
    GetModuleFileNameA(nullptr, path, MAX_PATH);
    return std::filesystem::path(path).parent_path().string() + "\\";
}

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

bool AwaitEnd(HWND window) {
    return WaitFor([&] { return !IsWindowVisible(window); }, kPromptLimitMs);
}

bool Press(HWND dialog, int id) {
    PostMessageA(dialog, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED),
                 reinterpret_cast<LPARAM>(GetDlgItem(dialog, id)));
    return AwaitEnd(dialog);
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

bool AssistantIsThere() { return AssistantsFolder() != nullptr; }

// The request file appears complete, and the assistant deletes it when it has carried it out.
bool AskAssistant(const std::string& request) {
    if (!AssistantIsThere()) return false;
    const std::filesystem::path folder = AssistantsFolder();
    std::ofstream(folder / "draft", std::ios::binary) << request << '\n';
    std::filesystem::rename(folder / "draft", folder / "request");
    return WaitFor([&] { return !exists(folder / "request"); }, kRequestLimitMs) &&
           !exists(folder / "request.refused");
}
