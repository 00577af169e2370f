// Drawing into bitmaps in memory. The screen itself has no pixels.
#include <algorithm>
#include <variant>
#include <vector>

#include "src/last_error.h"
#include "src/user/objects.h"

namespace user {
namespace {

struct Brush {
    COLORREF color;
    bool ofSystem;  // stays, whoever deletes it
};

struct Pen {
    COLORREF color;
};

struct Bitmap {
    int width;
    int height;
    std::vector<COLORREF> pixels;

    void Set(LONG x, LONG y, COLORREF color) {
        if (x >= 0 && x < width && y >= 0 && y < height)
            pixels[static_cast<std::size_t>(y * width + x)] = color;
    }
};

using Object = std::variant<Brush, Pen, Bitmap>;

// What is selected; null for what a new context has.
struct Context {
    HGDIOBJ brush = nullptr;
    HGDIOBJ pen = nullptr;
    HGDIOBJ bitmap = nullptr;
};

Objects<HGDIOBJ, Object>& AllObjects() {
    static auto& objects = *new Objects<HGDIOBJ, Object>;
    return objects;
}

Objects<HDC, Context>& AllContexts() {
    static auto& contexts = *new Objects<HDC, Context>;
    return contexts;
}

HGDIOBJ& SlotFor(Context& context, const Object& object) {
    if (std::holds_alternative<Brush>(object)) return context.brush;
    if (std::holds_alternative<Pen>(object)) return context.pen;
    return context.bitmap;
}

// The object of that kind behind a handle, kept alive by the result; null if there is none.
template <class Kind>
std::shared_ptr<Kind> Get(HGDIOBJ handle) {
    const auto object = AllObjects().Find(handle);
    return object && std::holds_alternative<Kind>(*object)
               ? std::shared_ptr<Kind>(object, &std::get<Kind>(*object))
               : nullptr;
}

// The crossings of a horizontal line through pixel centres with the sides of a polygon.
std::vector<double> Crossings(const POINT* points, int count, int y) {
    std::vector<double> crossings;
    for (int i = 0; i < count; ++i) {
        POINT a = points[i], b = points[(i + 1) % count];
        if (a.y > b.y) std::swap(a, b);
        if (y < a.y || y >= b.y) continue;
        crossings.push_back(a.x + static_cast<double>(b.x - a.x) * (y - a.y) / (b.y - a.y));
    }
    std::sort(crossings.begin(), crossings.end());
    return crossings;
}

void Fill(Bitmap& bitmap, const POINT* points, int count, COLORREF color) {
    for (int y = 0; y < bitmap.height; ++y) {
        const auto crossings = Crossings(points, count, y);
        for (std::size_t i = 0; i + 1 < crossings.size(); i += 2)
            for (int x = 0; x < bitmap.width; ++x)
                if (x >= crossings[i] && x <= crossings[i + 1]) bitmap.Set(x, y, color);
    }
}

void DrawLine(Bitmap& bitmap, POINT from, POINT to, COLORREF color) {
    const LONG steps = std::max({std::abs(to.x - from.x), std::abs(to.y - from.y), 1});
    for (LONG i = 0; i <= steps; ++i)
        bitmap.Set(from.x + (to.x - from.x) * i / steps, from.y + (to.y - from.y) * i / steps,
                   color);
}

}  // namespace
}  // namespace user

using namespace user;

DWORD WINAPI GetSysColor(int index) {
    switch (index) {
        case COLOR_BTNFACE:
            return 0xF0F0F0;
        case COLOR_BTNSHADOW:
            return 0xA0A0A0;
    }
    win32::NotImplemented("GetSysColor with this index");
    return 0;
}

HBRUSH WINAPI GetSysColorBrush(int index) {
    static const HGDIOBJ face = AllObjects().Add(Brush{GetSysColor(COLOR_BTNFACE), true});
    static const HGDIOBJ shadow = AllObjects().Add(Brush{GetSysColor(COLOR_BTNSHADOW), true});
    if (index == COLOR_BTNFACE) return static_cast<HBRUSH>(face);
    if (index == COLOR_BTNSHADOW) return static_cast<HBRUSH>(shadow);
    win32::NotImplemented("GetSysColorBrush with this index");
    return nullptr;
}

HDC WINAPI GetDC(HWND) { return AllContexts().Add({}); }

int WINAPI ReleaseDC(HWND, HDC context) { return AllContexts().Remove(context); }

HDC WINAPI CreateCompatibleDC(HDC) {
    if (win32::Refused("CreateCompatibleDC")) return nullptr;
    return AllContexts().Add({});
}

BOOL WINAPI DeleteDC(HDC context) { return AllContexts().Remove(context); }

HBITMAP WINAPI CreateCompatibleBitmap(HDC, int width, int height) {
    if (win32::Refused("CreateCompatibleBitmap") || width <= 0 || height <= 0) return nullptr;
    const auto pixels = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    return static_cast<HBITMAP>(
        AllObjects().Add(Bitmap{width, height, std::vector<COLORREF>(pixels)}));
}

HPEN WINAPI CreatePen(int, int, COLORREF color) {
    return static_cast<HPEN>(AllObjects().Add(Pen{color}));
}

HGDIOBJ WINAPI SelectObject(HDC context, HGDIOBJ handle) {
    const auto into = AllContexts().Find(context);
    const auto object = AllObjects().Find(handle);
    if (!into || !object) return nullptr;
    return std::exchange(SlotFor(*into, *object), handle);
}

BOOL WINAPI DeleteObject(HGDIOBJ handle) {
    const auto brush = Get<Brush>(handle);
    return (brush && brush->ofSystem) || AllObjects().Remove(handle);
}

int WINAPI FillRect(HDC context, const RECT* rect, HBRUSH brush) {
    const auto from = AllContexts().Find(context);
    const auto with = Get<Brush>(brush);
    const auto bitmap = from ? Get<Bitmap>(from->bitmap) : nullptr;
    if (!bitmap || !with) return FALSE;
    for (LONG y = rect->top; y < rect->bottom; ++y)
        for (LONG x = rect->left; x < rect->right; ++x) bitmap->Set(x, y, with->color);
    return TRUE;
}

BOOL WINAPI Polygon(HDC context, const POINT* points, int count) {
    const auto from = AllContexts().Find(context);
    const auto bitmap = from ? Get<Bitmap>(from->bitmap) : nullptr;
    if (!bitmap || count < 2) return FALSE;
    if (const auto brush = Get<Brush>(from->brush)) Fill(*bitmap, points, count, brush->color);
    if (const auto pen = Get<Pen>(from->pen))
        for (int i = 0; i < count; ++i)
            DrawLine(*bitmap, points[i], points[(i + 1) % count], pen->color);
    return TRUE;
}

COLORREF WINAPI GetPixel(HDC context, int x, int y) {
    constexpr COLORREF kNone = 0xFFFFFFFF;
    const auto from = AllContexts().Find(context);
    const auto bitmap = from ? Get<Bitmap>(from->bitmap) : nullptr;
    if (!bitmap || x < 0 || x >= bitmap->width || y < 0 || y >= bitmap->height) return kNone;
    return bitmap->pixels[static_cast<std::size_t>(y * bitmap->width + x)];
}
