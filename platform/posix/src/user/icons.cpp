// Icons, cursors and strings from the resources of a module.
#include "src/user/icons.h"

#include "src/last_error.h"
#include "src/module_resources.h"
#include "src/user/copy_cut.h"
#include "src/user/objects.h"
#include "src/user/template.h"

namespace user {
namespace {

struct Picture {
    HINSTANCE module;
    UINT image;
    bool shared;  // made by LoadIconA: one for all callers, for good
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
        const machine::WorldLock lock = machine::LockWorld();
        const auto found = shared.find({module, image});
        if (found != shared.end()) return found->second;
    }
    const HICON made = AllIcons().Add({module, image, true});
    const machine::WorldLock lock = machine::LockWorld();
    return shared.emplace(std::pair{module, image}, made).first->second;
}

// A cursor's handle tells its number: there are the system's own only.
HCURSOR SystemCursor(LPCSTR name) {
    return reinterpret_cast<HCURSOR>(static_cast<ULONG_PTR>(LOWORD(name)));
}

}  // namespace

UINT ImageOf(HICON icon) {
    const auto picture = AllIcons().Find(icon);
    return picture ? picture->image : 0;
}

}  // namespace user

using namespace user;

// Strikes with the number of the resource as detail.
HICON WINAPI LoadIconA(HINSTANCE instance, LPCSTR name) {
    if (win32::Refused("LoadIconA", LOWORD(name))) return nullptr;
    if (!HasIcon(instance, name)) return win32::Fail(ERROR_RESOURCE_NAME_NOT_FOUND, nullptr);
    return SharedIcon(instance, LOWORD(name));
}

// Icons only; no module of this platform has bitmaps.
HANDLE WINAPI LoadImageA(HINSTANCE instance, LPCSTR name, UINT type, int, int, UINT) {
    if (win32::Refused("LoadImageA", LOWORD(name))) return nullptr;
    if (type != IMAGE_ICON || !HasIcon(instance, name))
        return win32::Fail(ERROR_RESOURCE_NAME_NOT_FOUND, nullptr);
    return AllIcons().Add({instance, LOWORD(name), false});
}

// A shared icon stays, and that is no failure.
BOOL WINAPI DestroyIcon(HICON icon) {
    const auto picture = AllIcons().Find(icon);
    if (!picture) return win32::Fail(ERROR_INVALID_ICON_HANDLE, FALSE);
    return picture->shared || AllIcons().Remove(icon);
}

// Strikes with the number of the string as detail.
int WINAPI LoadStringA(HINSTANCE instance, UINT id, LPSTR text, int capacity) {
    if (win32::Refused("LoadStringA", id)) return 0;
    const std::string found = LoadText(instance, id);
    if (found.empty()) return win32::Fail(ERROR_RESOURCE_NAME_NOT_FOUND, 0);
    return CopyCut(found, text, capacity);
}

HCURSOR WINAPI LoadCursorA(HINSTANCE, LPCSTR name) {
    if (win32::Refused("LoadCursorA", LOWORD(name))) return nullptr;
    return SystemCursor(name);
}

HCURSOR WINAPI SetCursor(HCURSOR cursor) {
    const machine::WorldLock lock = machine::LockWorld();
    if (cursor == SystemCursor(IDC_WAIT)) ++TheDesk().waitCursors;
    return std::exchange(TheDesk().cursor, cursor);
}
