// The notification area, and the pages that the shell opens.
#include <algorithm>
#include <vector>

#include "simulator/journal.h"
#include "core/waiting.h"
#include "core/last_error.h"
#include "user/desktop_state.h"
#include "user/icons.h"
#include "user/window.h"

namespace user {
namespace {

using simulator::Event;
using enum simulator::EventKind;

// The events of one call, to be recorded after the lock is released.
using News = std::vector<Event>;

constexpr DWORD kSizes[] = {offsetof(NOTIFYICONDATAA, szTip) + 64,
                            offsetof(NOTIFYICONDATAA, guidItem), NOTIFYICONDATAA_V3_SIZE,
                            sizeof(NOTIFYICONDATAA)};

bool IsKnownSize(DWORD size) {
    return std::find(std::begin(kSizes), std::end(kSizes), size) != std::end(kSizes);
}

std::string Field(const char* text, std::size_t capacity) {
    return std::string(text, std::find(text, text + capacity, '\0'));
}

std::vector<TrayIcon>::iterator Find(HWND window, UINT id) {
    auto& icons = TheDesktop().icons;
    return std::find_if(icons.begin(), icons.end(), [=](const TrayIcon& icon) {
        return icon.window == window && icon.id == id;
    });
}

// An empty text ends the balloon instead of raising one.
void RaiseBalloon(TrayIcon& icon, const NOTIFYICONDATAA& data, News& news) {
    icon.balloonText = Field(data.szInfo, sizeof data.szInfo);
    icon.balloonTitle = Field(data.szInfoTitle, sizeof data.szInfoTitle);
    icon.balloonKind = data.dwInfoFlags;
    if (icon.balloonText.empty()) return;
    ++icon.balloons;
    news.push_back({kBalloon, icon.id, icon.balloonTitle, icon.balloonText});
}

// Copies the members that the flags of the record name. Records of the first size have no balloon.
void Fill(TrayIcon& icon, const NOTIFYICONDATAA& data, UINT image, simulator::EventKind kind,
          News& news) {
    if (data.uFlags & NIF_MESSAGE) icon.callback = data.uCallbackMessage;
    if (data.uFlags & NIF_ICON) icon.image = image;
    const std::size_t tip = data.cbSize == kSizes[0] ? 64 : sizeof data.szTip;
    if (data.uFlags & NIF_TIP) icon.tip = Field(data.szTip, tip);
    if (kind == kIconAdded || data.uFlags & (NIF_ICON | NIF_TIP))
        news.push_back({kind, icon.id, icon.tip, ""});
    if (data.uFlags & NIF_INFO && data.cbSize != kSizes[0]) RaiseBalloon(icon, data, news);
}

bool Add(const NOTIFYICONDATAA& data, UINT image, News& news) {
    auto& icons = TheDesktop().icons;
    if (Find(data.hWnd, data.uID) != icons.end()) return false;
    icons.push_back({data.hWnd, data.uID, 0, 0, "", "", "", 0, 0, 0});
    Fill(icons.back(), data, image, kIconAdded, news);
    return true;
}

bool Serve(DWORD message, const NOTIFYICONDATAA& data, UINT image, News& news) {
    if (!LookupLocked(data.hWnd)) return false;
    if (message == NIM_ADD) return Add(data, image, news);
    const auto icon = Find(data.hWnd, data.uID);
    if (icon == TheDesktop().icons.end()) return false;
    switch (message) {
        case NIM_MODIFY:
            Fill(*icon, data, image, kIconChanged, news);
            return true;
        case NIM_DELETE:
            news.push_back({kIconRemoved, icon->id, icon->tip, ""});
            TheDesktop().icons.erase(icon);
            return true;
        case NIM_SETVERSION:
            icon->version = data.uVersion;
            return true;
    }
    return false;
}

void Tell(News& news) {
    for (Event& event : news) simulator::Record(std::move(event));
}

}  // namespace

}  // namespace user

using namespace user;

BOOL WINAPI Shell_NotifyIconA(DWORD message, PNOTIFYICONDATAA data) {
    if (win32::MustFail<"Shell_NotifyIconA", "NIM_ message">(message)) return FALSE;
    if (!IsKnownSize(data->cbSize)) return FALSE;
    const UINT image = data->uFlags & NIF_ICON ? ImageOf(data->hIcon) : 0;
    News news;
    {
        const simulator::StateLock lock = simulator::LockState();
        if (!Serve(message, *data, image, news)) return FALSE;
    }
    Tell(news);
    return TRUE;
}

// Returns a number above 32: success.
HINSTANCE WINAPI ShellExecuteA(HWND, LPCSTR, LPCSTR file, LPCSTR, LPCSTR, int) {
    constexpr UINT_PTR kAccessDenied = 5;
    constexpr UINT_PTR kOpened = 42;
    if (win32::MustFail<"ShellExecuteA">()) return reinterpret_cast<HINSTANCE>(kAccessDenied);
    {
        const simulator::StateLock lock = simulator::LockState();
        TheDesktop().pages.emplace_back(file);
    }
    simulator::Record({simulator::EventKind::kPageOpened, 0, file, ""});
    return reinterpret_cast<HINSTANCE>(kOpened);
}
