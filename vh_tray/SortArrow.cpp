#include "SortArrow.h"

#include <shlwapi.h>

namespace {

// Headers of version 6 draw sort arrows themselves.
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

constexpr int kArrowFlags = HDF_SORTUP | HDF_SORTDOWN;

void SetArrowFlags(const CHeaderCtrl& header, int column, int flags) {
    HDITEMA item{};
    item.mask = HDI_FORMAT;
    if (!header.GetItem(column, &item)) return;
    item.fmt = (item.fmt & ~kArrowFlags) | flags;
    header.SetItem(column, &item);
}

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

CSortArrow::CSortArrow() : m_bHeaderSortFlags(HeaderDrawsArrows()) {}

CSortArrow::~CSortArrow() { DeleteBitmaps(); }

void CSortArrow::Show(const CHeaderCtrl& header, int column, bool descending) {
    const int oldColumn = m_nSortColumn;
    m_nSortColumn = column;
    if (m_bHeaderSortFlags)
        ShowByFlags(header, oldColumn, descending);
    else
        ShowByBitmap(header, oldColumn, descending);
}

void CSortArrow::ShowByFlags(const CHeaderCtrl& header, int oldColumn, bool descending) {
    if (oldColumn != m_nSortColumn && oldColumn != -1) SetArrowFlags(header, oldColumn, 0);
    if (m_nSortColumn >= 0)
        SetArrowFlags(header, m_nSortColumn, descending ? HDF_SORTDOWN : HDF_SORTUP);
}

void CSortArrow::ShowByBitmap(const CHeaderCtrl& header, int oldColumn, bool descending) {
    if (!m_hSortBitmap[kUp]) MakeBitmaps();
    const bool moved = oldColumn != m_nSortColumn;
    HDITEMA item{};
    item.mask = HDI_FORMAT | HDI_BITMAP;
    if (moved && oldColumn != -1) {
        item.fmt = m_nSavedHeaderFormat;
        item.hbm = m_hSavedHeaderBitmap;
        header.SetItem(oldColumn, &item);
    }
    if (m_nSortColumn < 0 || !header.GetItem(m_nSortColumn, &item)) return;
    if (moved) {
        m_nSavedHeaderFormat = item.fmt;
        m_hSavedHeaderBitmap = item.hbm;
    }
    item.fmt = (item.fmt & ~HDF_IMAGE) | HDF_BITMAP | HDF_BITMAP_ON_RIGHT;
    item.hbm = m_hSortBitmap[descending ? kDown : kUp];
    header.SetItem(m_nSortColumn, &item);
}

bool CSortArrow::OnMetricsChanged() {
    if (m_bHeaderSortFlags || !m_hSortBitmap[kUp]) return false;
    MakeBitmaps();
    return m_nSortColumn != -1;
}

void CSortArrow::MakeBitmaps() {
    DeleteBitmaps();
    if (LoadShellBitmaps()) return;
    DeleteBitmaps();
    m_hSortBitmap[kUp] = DrawArrow({{7, 4}, {2, 9}, {12, 9}});
    m_hSortBitmap[kDown] = DrawArrow({{2, 4}, {7, 9}, {12, 4}});
}

bool CSortArrow::LoadShellBitmaps() {
    constexpr WORD kShellArrowUp = 133, kShellArrowDown = 134;
    HMODULE shell = GetModuleHandleA("shell32.dll");
    const HMODULE loaded = shell ? nullptr : LoadLibraryA("shell32.dll");
    if (!shell) shell = loaded;
    if (!shell) return false;
    const auto load = [shell](WORD id) {
        return static_cast<HBITMAP>(
            LoadImageA(shell, MAKEINTRESOURCEA(id), IMAGE_BITMAP, 0, 0, LR_LOADMAP3DCOLORS));
    };
    m_hSortBitmap[kUp] = load(kShellArrowUp);
    m_hSortBitmap[kDown] = load(kShellArrowDown);
    if (loaded) FreeLibrary(loaded);
    return m_hSortBitmap[kUp] && m_hSortBitmap[kDown];
}

void CSortArrow::DeleteBitmaps() {
    for (HBITMAP& bitmap : m_hSortBitmap) {
        if (bitmap) DeleteObject(bitmap);
        bitmap = nullptr;
    }
}
