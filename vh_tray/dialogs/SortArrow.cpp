#include "dialogs/SortArrow.h"

#include <shlwapi.h>

namespace {

HBITMAP DrawArrow(const POINT (&corners)[3]) {
    constexpr RECT kArea{0, 0, 16, 15};
    const HDC screen = GetDC(nullptr);
    const HDC canvas = CreateCompatibleDC(screen);
    const HBITMAP bitmap = CreateCompatibleBitmap(screen, kArea.right, kArea.bottom);
    const HPEN pen = CreatePen(PS_SOLID, 0, GetSysColor(COLOR_BTNSHADOW));
    const HGDIOBJ oldBitmap = SelectObject(canvas, bitmap);
    FillRect(canvas, &kArea, GetSysColorBrush(COLOR_BTNFACE));
    const HGDIOBJ oldBrush = SelectObject(canvas, GetSysColorBrush(COLOR_BTNSHADOW));
    const HGDIOBJ oldPen = SelectObject(canvas, pen);
    Polygon(canvas, corners, 3);
    SelectObject(canvas, oldPen);
    SelectObject(canvas, oldBrush);
    SelectObject(canvas, oldBitmap);
    DeleteObject(pen);
    DeleteDC(canvas);
    ReleaseDC(nullptr, screen);
    return bitmap;
}

}  // namespace

// Those of version 6 do.
bool HeaderDrawsArrows() {
    const HMODULE controls = LoadLibraryA("comctl32.dll");
    if (!controls) return false;
    const auto getVersion =
        reinterpret_cast<DLLGETVERSIONPROC>(GetProcAddress(controls, "DllGetVersion"));
    DLLVERSIONINFO version{};
    version.cbSize = sizeof version;
    const bool draws = getVersion && SUCCEEDED(getVersion(&version)) && version.dwMajorVersion >= 6;
    FreeLibrary(controls);
    return draws;
}

void SetArrowFlags(const CHeaderCtrl& header, int column, int flags) {
    constexpr int kArrowFlags = HDF_SORTUP | HDF_SORTDOWN;
    HDITEMA item{};
    item.mask = HDI_FORMAT;
    if (!header.GetItem(column, &item)) return;
    item.fmt = (item.fmt & ~kArrowFlags) | flags;
    header.SetItem(column, &item);
}

void DrawArrows(HBITMAP (&bitmaps)[2]) {
    bitmaps[0] = DrawArrow({{7, 4}, {2, 9}, {12, 9}});
    bitmaps[1] = DrawArrow({{2, 4}, {7, 9}, {12, 4}});
}

bool LoadShellArrows(HBITMAP (&bitmaps)[2]) {
    constexpr WORD kShellArrowUp = 133, kShellArrowDown = 134;
    HMODULE shell = GetModuleHandleA("shell32.dll");
    const HMODULE loaded = shell ? nullptr : LoadLibraryA("shell32.dll");
    if (!shell) shell = loaded;
    if (!shell) return false;
    const auto load = [shell](WORD id) {
        return static_cast<HBITMAP>(
            LoadImageA(shell, MAKEINTRESOURCEA(id), IMAGE_BITMAP, 0, 0, LR_LOADMAP3DCOLORS));
    };
    bitmaps[0] = load(kShellArrowUp);
    bitmaps[1] = load(kShellArrowDown);
    if (loaded) FreeLibrary(loaded);
    return bitmaps[0] && bitmaps[1];
}
