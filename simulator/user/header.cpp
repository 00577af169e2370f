// The header control of a list.
#include <algorithm>

#include "core/last_error.h"
#include "user/copy_cut.h"
#include "user/list_view.h"

namespace user {
namespace {

HeaderItem* ItemAt(HeaderState& header, WPARAM index) {
    return index < header.items.size() ? &header.items[index] : nullptr;
}

void Change(HeaderItem& item, const HDITEMA& from) {
    if (from.mask & HDI_WIDTH) item.width = from.cxy;
    if (from.mask & HDI_TEXT) item.text = from.pszText ? from.pszText : "";
    if (from.mask & HDI_FORMAT) item.format = from.fmt;
    if (from.mask & HDI_BITMAP) item.bitmap = from.hbm;
}

void Tell(const HeaderItem& item, HDITEMA& to) {
    if (to.mask & HDI_WIDTH) to.cxy = item.width;
    if (to.mask & HDI_TEXT) CopyCut(item.text, to.pszText, to.cchTextMax);
    if (to.mask & HDI_FORMAT) to.fmt = item.format;
    if (to.mask & HDI_BITMAP) to.hbm = item.bitmap;
}

int ItemUnder(const HeaderState& header, int x) {
    int right = 0;
    for (std::size_t i = 0; i < header.items.size(); ++i) {
        right += header.items[i].width;
        if (x < right) return static_cast<int>(i);
    }
    return -1;
}

void NotifyOfClick(const Window& header, int item, int button) {
    NMHEADERA notice{};
    notice.hdr = {header.handle, static_cast<UINT_PTR>(header.id), HDN_ITEMCLICKA};
    notice.iItem = item;
    notice.iButton = button;
    SendMessageA(header.parent, WM_NOTIFY, notice.hdr.idFrom, reinterpret_cast<LPARAM>(&notice));
}

LRESULT CALLBACK HeaderProc(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
    const WindowPtr window = Lookup(handle);
    auto* header = StateOf<HeaderState>(window);
    if (!header) return 0;
    auto* item = reinterpret_cast<HDITEMA*>(lParam);
    switch (message) {
        case HDM_GETITEMCOUNT:
            return static_cast<LRESULT>(header->items.size());
        case HDM_INSERTITEMA: {
            const std::size_t at = std::min<std::size_t>(wParam, header->items.size());
            Change(*header->items.emplace(header->items.begin() + static_cast<std::ptrdiff_t>(at)),
                   *item);
            return static_cast<LRESULT>(at);
        }
        case HDM_GETITEMA:
            if (const HeaderItem* asked = ItemAt(*header, wParam)) return Tell(*asked, *item), TRUE;
            return FALSE;
        case HDM_SETITEMA:
            if (HeaderItem* changed = ItemAt(*header, wParam)) return Change(*changed, *item), TRUE;
            return FALSE;
        case WM_LBUTTONUP:
        case WM_RBUTTONUP: {
            const int under = ItemUnder(*header, static_cast<std::int16_t>(LOWORD(lParam)));
            if (under >= 0) NotifyOfClick(*window, under, message == WM_RBUTTONUP);
            return 0;
        }
    }
    if (message >= HDM_FIRST && message < WM_APP)
        win32::NotImplemented("header message " + std::to_string(message - HDM_FIRST));
    return DefWindowProcA(handle, message, wParam, lParam);
}

}  // namespace

const WindowClass kHeaderClass = {WC_HEADERA, 0, HeaderProc, [](Window& window) {
                                      window.state = std::make_unique<HeaderState>();
                                  }};

}  // namespace user
