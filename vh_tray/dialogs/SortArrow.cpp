#include "dialogs/SortArrow.h"

#include <shlwapi.h>

namespace {

void ReleaseScreen(HDC screen) { ReleaseDC(nullptr, screen); }

OwnedBitmap DrawArrow(const POINT (&corners)[3]) {
    constexpr RECT kArea{0, 0, 16, 15};
    const HlxOwned<HDC, ReleaseScreen> screen(GetDC(nullptr));
    const HlxOwned<HDC, DeleteDC> canvas(CreateCompatibleDC(screen.get()));
    OwnedBitmap bitmap(CreateCompatibleBitmap(screen.get(), kArea.right, kArea.bottom));
    const HlxOwned<HPEN, DeleteObject> pen(CreatePen(PS_SOLID, 0, GetSysColor(COLOR_BTNSHADOW)));
    const HGDIOBJ oldBitmap = SelectObject(canvas.get(), bitmap.get());
    FillRect(canvas.get(), &kArea, GetSysColorBrush(COLOR_BTNFACE));
    const HGDIOBJ oldBrush = SelectObject(canvas.get(), GetSysColorBrush(COLOR_BTNSHADOW));
    const HGDIOBJ oldPen = SelectObject(canvas.get(), pen.get());
    Polygon(canvas.get(), corners, 3);
    SelectObject(canvas.get(), oldPen);
    SelectObject(canvas.get(), oldBrush);
    SelectObject(canvas.get(), oldBitmap);
    return bitmap;
}

}  // namespace

// Header controls of version 6 do.
bool HeaderDrawsArrows() {
    const HlxModule controls(LoadLibraryA("comctl32.dll"));
    if (!controls) return false;
    const auto getVersion =
        reinterpret_cast<DLLGETVERSIONPROC>(GetProcAddress(controls.get(), "DllGetVersion"));
    DLLVERSIONINFO version{};
    version.cbSize = sizeof version;
    return getVersion && SUCCEEDED(getVersion(&version)) && version.dwMajorVersion >= 6;
}

void SetArrowFlags(const CHeaderCtrl& header, int column, int flags) {
    constexpr int kArrowFlags = HDF_SORTUP | HDF_SORTDOWN;
    HDITEMA item{};
    item.mask = HDI_FORMAT;
    if (!header.GetItem(column, &item)) return;
    item.fmt = (item.fmt & ~kArrowFlags) | flags;
    header.SetItem(column, &item);
}

void DrawArrows(OwnedBitmap (&bitmaps)[2]) {
    bitmaps[0] = DrawArrow({{7, 4}, {2, 9}, {12, 9}});
    bitmaps[1] = DrawArrow({{2, 4}, {7, 9}, {12, 4}});
}

bool LoadShellArrows(OwnedBitmap (&bitmaps)[2]) {
    constexpr WORD kShellArrowUp = 133, kShellArrowDown = 134;
    HMODULE shell = GetModuleHandleA("shell32.dll");
    const HlxModule loaded(shell ? nullptr : LoadLibraryA("shell32.dll"));
    if (!shell) shell = loaded.get();
    if (!shell) return false;
    const auto load = [shell](WORD id) {
        return OwnedBitmap(static_cast<HBITMAP>(
            LoadImageA(shell, MAKEINTRESOURCEA(id), IMAGE_BITMAP, 0, 0, LR_LOADMAP3DCOLORS)));
    };
    bitmaps[0] = load(kShellArrowUp);
    bitmaps[1] = load(kShellArrowDown);
    return bitmaps[0] && bitmaps[1];
}
