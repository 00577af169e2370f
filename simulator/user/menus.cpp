// Menus from resources, and the popup menu on the screen.
#include <utility>

#include "simulator/journal.h"
#include "core/last_error.h"
#include "user/menu.h"
#include "user/objects.h"
#include "user/queue.h"
#include "user/template.h"
#include "user/window.h"

namespace user {
namespace {

using Menus = Objects<HMENU, Menu>;

Menus& AllMenus() {
    static Menus& menus = *new Menus;
    return menus;
}

HMENU Build(const std::vector<MenuItemTemplate>& from) {
    Menu menu;
    for (const MenuItemTemplate& item : from) {
        const HMENU popup = item.flags & MF_POPUP ? Build(item.items) : nullptr;
        menu.items.push_back({item.id, item.text, popup});
    }
    return AllMenus().Add(std::move(menu));
}

std::shared_ptr<Menu> MenuOrError(HMENU handle) {
    auto menu = AllMenus().Find(handle);
    if (!menu) SetLastError(ERROR_INVALID_MENU_HANDLE);
    return menu;
}

const MenuItem* ItemAt(const std::shared_ptr<Menu>& menu, int position) {
    const auto at = static_cast<std::size_t>(position);
    return menu && at < menu->items.size() ? &menu->items[at] : nullptr;
}

// Puts the menu on the desktop. False: another one is open there.
bool Open(const OpenMenu& menu) {
    {
        const simulator::StateLock lock = simulator::LockState();
        if (TheDesktop().menu) return false;
        TheDesktop().menu = menu;
    }
    simulator::Record({simulator::EventKind::kMenuOpened, 0, "", ""});
    return true;
}

// Closes the menu and returns the chosen command, 0 for none.
UINT Close() {
    UINT chosen = 0;
    {
        const simulator::StateLock lock = simulator::LockState();
        chosen = TheDesktop().menu->chosen;
        TheDesktop().menu.reset();
    }
    simulator::Record({simulator::EventKind::kMenuClosed, chosen, "", ""});
    return chosen;
}

}  // namespace

std::shared_ptr<Menu> LookupMenuLocked(HMENU menu) { return AllMenus().FindLocked(menu); }

std::size_t CountMenusLocked() {
    return AllMenus().CountLocked([](const Menu&) { return true; });
}

std::string PlainText(const std::string& text) {
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '&' && ++i == text.size()) break;
        plain.push_back(text[i]);
    }
    return plain;
}

}  // namespace user

using namespace user;

HMENU WINAPI LoadMenuA(HINSTANCE instance, LPCSTR name) {
    if (win32::MustFail<"LoadMenuA">()) return nullptr;
    const auto items = LoadMenuTemplate(instance, name);
    if (!items) return win32::Fail(ERROR_RESOURCE_NAME_NOT_FOUND, nullptr);
    return Build(*items);
}

HMENU WINAPI GetSubMenu(HMENU menu, int position) {
    if (win32::MustFail<"GetSubMenu">()) return nullptr;
    const auto found = MenuOrError(menu);
    const MenuItem* item = ItemAt(found, position);
    return item ? item->popup : nullptr;
}

BOOL WINAPI SetMenuDefaultItem(HMENU menu, UINT item, UINT byPosition) {
    if (win32::MustFail<"SetMenuDefaultItem">()) return FALSE;
    const auto found = MenuOrError(menu);
    if (!found) return FALSE;
    if (byPosition) {
        const MenuItem* at = ItemAt(found, static_cast<int>(item));
        if (!at) return FALSE;
        item = at->id;
    }
    for (const MenuItem& candidate : found->items)
        if (candidate.id == item) return found->defaultItem = item, TRUE;
    return FALSE;
}

// The choice is posted to the owner as a command. The menu closes with its owner.
BOOL WINAPI TrackPopupMenu(HMENU menu, UINT, int x, int y, int, HWND owner, const RECT*) {
    if (win32::MustFail<"TrackPopupMenu">()) return FALSE;
    if (!MenuOrError(menu) || !Lookup(owner)) return FALSE;
    if (!Open({menu, owner, {x, y}})) return win32::Fail(ERROR_POPUP_ALREADY_ACTIVE, FALSE);
    RunModalLoop([&] { return LookupLocked(owner) && !TheDesktop().menu->closed; },
                 [](MSG&) { return false; });
    if (const UINT chosen = Close()) Post(owner, WM_COMMAND, chosen, 0);
    return TRUE;
}

BOOL WINAPI DestroyMenu(HMENU menu) {
    const auto found = MenuOrError(menu);
    if (!found) return FALSE;
    for (const MenuItem& item : found->items)
        if (item.popup) DestroyMenu(item.popup);
    return AllMenus().Remove(menu);
}
