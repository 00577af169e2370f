#include "user/desktop_state.h"

namespace user {

DesktopState& TheDesktop() {
    static DesktopState& desktop = *new DesktopState;
    return desktop;
}

OpenMenu* VisibleMenu() {
    auto& menu = TheDesktop().menu;
    return menu && !menu->closed ? &*menu : nullptr;
}

// Above the numbers of MAKEINTRESOURCE.
UINT_PTR NewHandle() {
    static UINT_PTR next = 0x10000;
    return next += 4;
}

}  // namespace user
