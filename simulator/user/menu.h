// The contents of a menu.
#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <vector>

namespace user {

struct MenuItem {
    UINT id;
    std::string text;  // with the '&' of its key
    HMENU popup;       // null if the item is a command
};

struct Menu {
    std::vector<MenuItem> items;
    UINT defaultItem = static_cast<UINT>(-1);  // a command; -1 for none
};

// For a caller that holds the state lock. Null if there is no such menu.
std::shared_ptr<Menu> LookupMenuLocked(HMENU menu);

// All menus, popups among them. Called under the lock.
std::size_t CountMenusLocked();

// The text as the user reads it: '&' marks a key and is not shown, "&&" is an ampersand.
std::string PlainText(const std::string& text);

}  // namespace user
