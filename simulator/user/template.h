// Reading of the dialog and menu templates and the string tables of a module's resources.
//
// The bytes may come from any file: what is not valid yields nothing, or an empty text.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace user {

// Place and size in dialog units.
struct UnitRect {
    int x, y, width, height;
};

struct ControlTemplate {
    DWORD style;
    DWORD exStyle;
    UnitRect place;
    LONG_PTR id;
    std::variant<WORD, std::string> className;  // a number is one of the predefined classes
    std::string text;
};

struct DialogTemplate {
    DWORD style;
    DWORD exStyle;
    UnitRect place;
    std::string caption;
    std::vector<ControlTemplate> controls;
};

struct MenuItemTemplate {
    UINT flags;  // MF_...
    UINT id;     // 0 for a popup
    std::string text;
    std::vector<MenuItemTemplate> items;  // of a popup
};

std::optional<DialogTemplate> LoadDialogTemplate(HINSTANCE module, LPCSTR name);
std::optional<std::vector<MenuItemTemplate>> LoadMenuTemplate(HINSTANCE module, LPCSTR name);
// Empty if the string does not exist.
std::string LoadText(HINSTANCE module, UINT id);

}  // namespace user
