// Icons, cursors and strings from the resources of a module.
#include "user/icons.h"

#include "core/last_error.h"
#include "kernel/module_resources.h"
#include "user/copy_cut.h"
#include "user/objects.h"
#include "user/template.h"

namespace user {
namespace {

struct Picture {
    HINSTANCE module;
    UINT image;
    bool shared;  // from LoadIconA: shared by all callers, never destroyed
};

using Icons = Objects<HICON, Picture>;

Icons& AllIcons() {
    static Icons& icons = *new Icons;
    return icons;
}

bool HasIcon(HINSTANCE module, LPCSTR name) {
    return IS_INTRESOURCE(name) &&
           !win32::FindModuleResource(module, LOWORD(RT_GROUP_ICON), LOWORD(name)).empty();
}

HICON SharedIcon(HINSTANCE module, UINT image) {
    static auto& shared = *new std::map<std::pair<HINSTANCE, UINT>, HICON>;
    {
        const simulator::StateLock lock = simulator::LockState();
        const auto found = shared.find({module, image});
        if (found != shared.end()) return found->second;
    }
    const HICON made = AllIcons().Add({module, image, true});
    const simulator::StateLock lock = simulator::LockState();
    return shared.emplace(std::pair{module, image}, made).first->second;
}

// A cursor's handle is its number: only the system's own cursors exist.
HCURSOR SystemCursor(LPCSTR name) {
    return reinterpret_cast<HCURSOR>(static_cast<ULONG_PTR>(LOWORD(name)));
}

}  // namespace

UINT ImageOf(HICON icon) {
    const auto picture = AllIcons().Find(icon);
    return picture ? picture->image : 0;
}

std::size_t CountIconsLocked() {
    return AllIcons().CountLocked([](const Picture& picture) { return !picture.shared; });
}

}  // namespace user

using namespace user;

HICON WINAPI LoadIconA(HINSTANCE instance, LPCSTR name) {
    if (win32::MustFail<"LoadIconA", "id of the resource">(LOWORD(name))) return nullptr;
    if (!HasIcon(instance, name)) return win32::Fail(ERROR_RESOURCE_NAME_NOT_FOUND, nullptr);
    return SharedIcon(instance, LOWORD(name));
}

// Icons only; no module of this platform has bitmaps.
HANDLE WINAPI LoadImageA(HINSTANCE instance, LPCSTR name, UINT type, int, int, UINT) {
    if (win32::MustFail<"LoadImageA", "id of the resource">(LOWORD(name))) return nullptr;
    if (type != IMAGE_ICON || !HasIcon(instance, name))
        return win32::Fail(ERROR_RESOURCE_NAME_NOT_FOUND, nullptr);
    return AllIcons().Add({instance, LOWORD(name), false});
}

// A shared icon is not destroyed; the call succeeds.
BOOL WINAPI DestroyIcon(HICON icon) {
    const auto picture = AllIcons().Find(icon);
    if (!picture) return win32::Fail(ERROR_INVALID_ICON_HANDLE, FALSE);
    return picture->shared || AllIcons().Remove(icon);
}

int WINAPI LoadStringA(HINSTANCE instance, UINT id, LPSTR text, int capacity) {
    if (win32::MustFail<"LoadStringA", "id of the string">(id)) return 0;
    const std::string found = LoadText(instance, id);
    if (found.empty()) return win32::Fail(ERROR_RESOURCE_NAME_NOT_FOUND, 0);
    return CopyCut(found, text, capacity);
}

HCURSOR WINAPI LoadCursorA(HINSTANCE, LPCSTR name) {
    if (win32::MustFail<"LoadCursorA", "id of the cursor">(LOWORD(name))) return nullptr;
    return SystemCursor(name);
}

HCURSOR WINAPI SetCursor(HCURSOR cursor) {
    const simulator::StateLock lock = simulator::LockState();
    if (cursor == SystemCursor(IDC_WAIT)) ++TheDesktop().waitCursors;
    return std::exchange(TheDesktop().cursor, cursor);
}
