// Drawing into bitmaps in memory. A bitmap has no pixels: it keeps the polygon drawn in it last.
#include "user/drawing.h"

#include <utility>
#include <variant>
#include <vector>

#include "core/last_error.h"
#include "user/objects.h"

namespace user {
namespace {

// Stock objects are the system's: DeleteObject leaves them.
struct Brush {
    bool stock = false;
};

struct Pen {
    bool stock = false;
};

struct Bitmap {
    bool stock = false;
    std::vector<POINT> polygon = {};
};

using Object = std::variant<Brush, Pen, Bitmap>;

Objects<HGDIOBJ, Object>& AllObjects() {
    static auto& objects = *new Objects<HGDIOBJ, Object>;
    return objects;
}

template <class Kind>
HGDIOBJ Stock() {
    static const HGDIOBJ object = AllObjects().Add(Kind{.stock = true});
    return object;
}

// What is selected.
struct Context {
    HGDIOBJ brush = Stock<Brush>();
    HGDIOBJ pen = Stock<Pen>();
    HGDIOBJ bitmap = Stock<Bitmap>();
};

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

// The bitmap that is selected in a context, or null.
std::shared_ptr<Bitmap> BitmapIn(HDC handle) {
    const auto context = AllContexts().Find(handle);
    return context ? Get<Bitmap>(context->bitmap) : nullptr;
}

template <class Kind>
std::size_t Count() {
    return AllObjects().CountLocked([](const Object& object) {
        const auto* kind = std::get_if<Kind>(&object);
        return kind && !kind->stock;
    });
}

}  // namespace

std::vector<POINT> PolygonInLocked(HBITMAP handle) {
    const auto object = AllObjects().FindLocked(handle);
    const auto* bitmap = object ? std::get_if<Bitmap>(object.get()) : nullptr;
    return bitmap ? bitmap->polygon : std::vector<POINT>();
}

std::map<std::string, std::size_t> CountDrawingObjectsLocked() {
    return {{"bitmap", Count<Bitmap>()},
            {"pen", Count<Pen>()},
            {"device context", AllContexts().CountLocked([](const Context&) { return true; })}};
}

}  // namespace user

using namespace user;

DWORD WINAPI GetSysColor(int index) {
    switch (index) {
        case COLOR_BTNFACE:
            return 0xF0F0F0;
        case COLOR_BTNSHADOW:
            return 0xA0A0A0;
    }
    win32::NotImplemented("GetSysColor with index " + std::to_string(index));
}

HBRUSH WINAPI GetSysColorBrush(int index) {
    static const HGDIOBJ face = AllObjects().Add(Brush{.stock = true});
    static const HGDIOBJ shadow = AllObjects().Add(Brush{.stock = true});
    if (index == COLOR_BTNFACE) return static_cast<HBRUSH>(face);
    if (index == COLOR_BTNSHADOW) return static_cast<HBRUSH>(shadow);
    win32::NotImplemented("GetSysColorBrush with index " + std::to_string(index));
}

HDC WINAPI GetDC(HWND) {
    if (win32::MustFail<"GetDC">()) return nullptr;
    return AllContexts().Add({});
}

int WINAPI ReleaseDC(HWND, HDC context) { return AllContexts().Remove(context); }

HDC WINAPI CreateCompatibleDC(HDC) {
    if (win32::MustFail<"CreateCompatibleDC">()) return nullptr;
    return AllContexts().Add({});
}

BOOL WINAPI DeleteDC(HDC context) { return AllContexts().Remove(context); }

HBITMAP WINAPI CreateCompatibleBitmap(HDC, int width, int height) {
    if (win32::MustFail<"CreateCompatibleBitmap">() || width <= 0 || height <= 0) return nullptr;
    return static_cast<HBITMAP>(AllObjects().Add(Bitmap{}));
}

HPEN WINAPI CreatePen(int, int, COLORREF) {
    if (win32::MustFail<"CreatePen">()) return nullptr;
    return static_cast<HPEN>(AllObjects().Add(Pen{}));
}

HGDIOBJ WINAPI SelectObject(HDC context, HGDIOBJ handle) {
    if (win32::MustFail<"SelectObject">()) return nullptr;
    const auto into = AllContexts().Find(context);
    const auto object = AllObjects().Find(handle);
    if (!into || !object) return nullptr;
    return std::exchange(SlotFor(*into, *object), handle);
}

BOOL WINAPI DeleteObject(HGDIOBJ handle) {
    const auto object = AllObjects().Find(handle);
    const auto isStock = [](const auto& kind) { return kind.stock; };
    return object && (std::visit(isStock, *object) || AllObjects().Remove(handle));
}

int WINAPI FillRect(HDC context, const RECT*, HBRUSH brush) {
    if (win32::MustFail<"FillRect">()) return FALSE;
    const auto bitmap = BitmapIn(context);
    if (!bitmap || !Get<Brush>(brush)) return FALSE;
    bitmap->polygon.clear();
    return TRUE;
}

BOOL WINAPI Polygon(HDC context, const POINT* points, int count) {
    if (win32::MustFail<"Polygon">()) return FALSE;
    const auto bitmap = BitmapIn(context);
    if (!bitmap || count < 2) return FALSE;
    bitmap->polygon.assign(points, points + count);
    return TRUE;
}
