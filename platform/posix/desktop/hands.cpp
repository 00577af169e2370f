// The user's hands. They reach a program as the system's own input does: by messages posted to the
// window under the hand.
#include <algorithm>
#include <functional>

#include "desktop/desktop.h"
#include "machine/clock.h"
#include "machine/waits.h"
#include "src/user/desk.h"
#include "src/user/list_view.h"
#include "src/user/menu.h"
#include "src/user/queue.h"
#include "src/user/window.h"

namespace desktop {
namespace {

using namespace user;

const Outcome kDone{};

// Acts while nothing moves, and waits until the programs have done what follows from it.
Outcome Act(const std::function<Outcome(machine::WorldLock&)>& act) {
    machine::WorldLock lock = machine::LockWorld();
    machine::Settle(lock);
    Outcome outcome = act(lock);
    if (outcome) machine::Settle(lock);
    return outcome;
}

void CloseMenu(UINT chosen) {
    TheDesk().menu->chosen = chosen;
    TheDesk().menu->closed = true;
    machine::WorldChanged();
}

// Any click elsewhere closes an open menu.
void CloseMenuFirst(machine::WorldLock& lock) {
    if (!TheDesk().menu) return;
    CloseMenu(0);
    machine::Settle(lock);
}

Outcome Callbacks(UINT id, const std::vector<UINT>& messages) {
    return Act([&](machine::WorldLock& lock) -> Outcome {
        CloseMenuFirst(lock);
        const auto& icons = TheDesk().icons;
        const auto icon = std::find_if(icons.begin(), icons.end(),
                                       [=](const TrayIcon& each) { return each.id == id; });
        if (icon == icons.end()) return {"no such icon"};
        for (const UINT message : messages)
            PostLocked(icon->window, icon->callback, id, static_cast<LPARAM>(message));
        return kDone;
    });
}

// The window that takes the user's input: the given one, or the front one of those that do.
HWND InputWindow(HWND given) {
    const auto takesInput = [](HWND handle) {
        const WindowPtr window = LookupLocked(handle);
        return window && window->Has(WS_VISIBLE) && !window->Has(WS_DISABLED);
    };
    if (given) return takesInput(given) ? given : nullptr;
    const auto& windows = TopLevelWindows();
    const auto front = std::find_if(windows.begin(), windows.end(), takesInput);
    return front == windows.end() ? nullptr : *front;
}

// Acts on the input window.
Outcome ActOn(HWND given, const std::function<Outcome(const Window&)>& act) {
    return Act([&](machine::WorldLock& lock) -> Outcome {
        CloseMenuFirst(lock);
        const HWND window = InputWindow(given);
        if (!window) return {given ? "that window takes no input" : "no window takes input"};
        return act(*LookupLocked(window));
    });
}

// The first window within `outer` for which `wanted` holds and that is visible with all around it.
WindowPtr FindWithin(const Window& outer, const std::function<bool(const Window&)>& wanted) {
    for (const HWND child : outer.children) {
        const WindowPtr inner = LookupLocked(child);
        if (!inner->Has(WS_VISIBLE)) continue;
        if (wanted(*inner)) return inner;
        if (WindowPtr found = FindWithin(*inner, wanted)) return found;
    }
    return nullptr;
}

Outcome PressWhere(HWND window, const std::function<bool(const Window&)>& wanted) {
    return ActOn(window, [&](const Window& dialog) -> Outcome {
        const WindowPtr button = FindWithin(dialog, [&](const Window& inner) {
            return inner.type == &kButtonClass && wanted(inner);
        });
        if (!button) return {"no such button"};
        if (button->Has(WS_DISABLED)) return {"that button is disabled"};
        PostLocked(button->handle, BM_CLICK, 0, 0);
        return kDone;
    });
}

Outcome ChooseWhere(const std::function<bool(const user::MenuItem&)>& wanted) {
    return Act([&](machine::WorldLock&) -> Outcome {
        const auto& open = TheDesk().menu;
        const auto menu = open ? LookupMenuLocked(open->menu) : nullptr;
        if (!menu) return {"no menu is open"};
        const auto item = std::find_if(menu->items.begin(), menu->items.end(), wanted);
        if (item == menu->items.end() || item->popup) return {"no such menu item"};
        CloseMenu(item->id);
        return kDone;
    });
}

// The windows at which programs as a whole can be addressed, first one first.
std::vector<HWND> Unowned() {
    std::vector<HWND> windows;
    for (const HWND window : TopLevelWindows())
        if (!LookupLocked(window)->owner) windows.push_back(window);
    std::sort(windows.begin(), windows.end());
    return windows;
}

}  // namespace

void MovePointer(int x, int y) {
    const machine::WorldLock lock = machine::LockWorld();
    TheDesk().pointer = {x, y};
}

Outcome MoveOver(UINT icon) {
    {
        const machine::WorldLock lock = machine::LockWorld();
        const RECT& screen = TheDesk().screen;
        TheDesk().pointer = {screen.right - 100, (TheDesk().workArea.bottom + screen.bottom) / 2};
    }
    return Callbacks(icon, {WM_MOUSEMOVE});
}

Outcome Click(UINT icon) { return Callbacks(icon, {WM_LBUTTONDOWN, WM_LBUTTONUP}); }

Outcome DoubleClick(UINT icon) {
    return Callbacks(icon, {WM_LBUTTONDOWN, WM_LBUTTONUP, WM_LBUTTONDBLCLK, WM_LBUTTONUP});
}

Outcome RightClick(UINT icon) { return Callbacks(icon, {WM_RBUTTONDOWN, WM_RBUTTONUP}); }

Outcome Callback(UINT icon, UINT mouseMessage) { return Callbacks(icon, {mouseMessage}); }

Outcome Choose(std::string_view item) {
    return ChooseWhere(
        [=](const user::MenuItem& each) { return user::PlainText(each.text) == item; });
}

Outcome Choose(UINT command) {
    return ChooseWhere([=](const user::MenuItem& each) { return each.id == command; });
}

Outcome DismissMenu() {
    return Act([](machine::WorldLock&) -> Outcome {
        if (!TheDesk().menu) return {"no menu is open"};
        CloseMenu(0);
        return kDone;
    });
}

Outcome Press(std::string_view button, HWND window) {
    return PressWhere(window,
                      [=](const Window& each) { return user::PlainText(each.text) == button; });
}

Outcome Press(int id, HWND window) {
    return PressWhere(window, [=](const Window& each) { return each.id == id; });
}

Outcome CloseWindow(HWND window) {
    return ActOn(window, [](const Window& dialog) {
        PostLocked(dialog.handle, WM_CLOSE, 0, 0);
        return kDone;
    });
}

// A key goes to the control that has the focus, or to the window itself.
Outcome PressKey(int key, HWND window) {
    return ActOn(window, [=](const Window& dialog) {
        const HWND focus = TheDesk().focus;
        const HWND target = RootOf(focus) == dialog.handle ? focus : dialog.handle;
        PostLocked(target, WM_KEYDOWN, static_cast<WPARAM>(key), 0);
        return kDone;
    });
}

Outcome ClickHeader(int column, HWND window) {
    return ActOn(window, [=](const Window& dialog) -> Outcome {
        const WindowPtr header =
            FindWithin(dialog, [](const Window& inner) { return inner.type == &kHeaderClass; });
        if (!header) return {"no list with a header"};
        const auto& items = user::StateOf<HeaderState>(header)->items;
        const auto at = static_cast<std::size_t>(column);
        if (at >= items.size() || items[at].width <= 0) return {"no such column"};
        int left = 0;
        for (std::size_t i = 0; i < at; ++i) left += items[i].width;
        const LPARAM point = MAKELONG(left + items[at].width / 2, 1);
        PostLocked(header->handle, WM_LBUTTONDOWN, 0, point);
        PostLocked(header->handle, WM_LBUTTONUP, 0, point);
        return kDone;
    });
}

Outcome LogOff() {
    return Act([](machine::WorldLock& lock) -> Outcome {
        CloseMenuFirst(lock);
        const auto windows = Unowned();
        if (windows.empty()) return {"no program has a window"};
        for (const HWND window : windows) PostLocked(window, WM_CLOSE, 0, 0);
        return kDone;
    });
}

Outcome Post(UINT message, WPARAM wParam, LPARAM lParam) {
    return Act([=](machine::WorldLock&) -> Outcome {
        const auto windows = Unowned();
        if (windows.empty()) return {"no program has a window"};
        PostLocked(windows.front(), message, wParam, lParam);
        return kDone;
    });
}

void Advance(std::chrono::milliseconds span) { machine::Clock::Advance(span); }

bool WaitUntil(const std::function<bool()>& met, std::chrono::milliseconds limit) {
    constexpr std::chrono::milliseconds kPause{50};
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!met()) {
        if (std::chrono::steady_clock::now() >= end) return false;
        machine::AwaitEvent(kPause);
    }
    return true;
}

}  // namespace desktop
