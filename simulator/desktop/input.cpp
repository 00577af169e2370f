// User input. It reaches a program as the system's own input does: as messages posted to the window
// under the pointer or with the focus.
#include <algorithm>
#include <functional>

#include "simulator/desktop.h"
#include "simulator/clock.h"
#include "core/waiting.h"
#include "user/desktop_state.h"
#include "user/list_view.h"
#include "user/menu.h"
#include "user/queue.h"
#include "user/window.h"

namespace desktop {
namespace {

using namespace user;

const Outcome kDone{};

// Calls `act` while all threads are idle, and waits until they are idle again.
Outcome Act(const std::function<Outcome(simulator::StateLock&)>& act) {
    simulator::StateLock lock = simulator::LockState();
    simulator::WaitUntilIdle(lock);
    Outcome outcome = act(lock);
    if (outcome) simulator::WaitUntilIdle(lock);
    return outcome;
}

void CloseMenu(UINT chosen) {
    TheDesktop().menu->chosen = chosen;
    TheDesktop().menu->closed = true;
    simulator::NotifyStateChanged();
}

// Any click elsewhere closes an open menu.
void CloseMenuFirst(simulator::StateLock& lock) {
    if (!VisibleMenu()) return;
    CloseMenu(0);
    simulator::WaitUntilIdle(lock);
}

Outcome Callbacks(UINT id, const std::vector<UINT>& messages) {
    return Act([&](simulator::StateLock& lock) -> Outcome {
        CloseMenuFirst(lock);
        const auto& icons = TheDesktop().icons;
        const auto icon = std::find_if(icons.begin(), icons.end(),
                                       [=](const TrayIcon& each) { return each.id == id; });
        if (icon == icons.end()) return {"no such icon"};
        for (const UINT message : messages)
            PostLocked(icon->window, icon->callback, id, static_cast<LPARAM>(message));
        return kDone;
    });
}

// The window that receives the user input: the given one, or else the front one of all that are
// visible and enabled.
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

// Activates the input window, as a click does, and calls `act` with it.
Outcome ActOn(HWND given, const std::function<Outcome(const Window&)>& act) {
    return Act([&](simulator::StateLock& lock) -> Outcome {
        CloseMenuFirst(lock);
        const HWND window = InputWindow(given);
        if (!window) return {given ? "that window takes no input" : "no window takes input"};
        Activate(RootOf(window));
        return act(*LookupLocked(window));
    });
}

// The first window within `outer` for which `matches` holds and that is visible with all around it.
WindowPtr FindWithin(const Window& outer, const std::function<bool(const Window&)>& matches) {
    for (const HWND child : outer.children) {
        const WindowPtr inner = LookupLocked(child);
        if (!inner->Has(WS_VISIBLE)) continue;
        if (matches(*inner)) return inner;
        if (WindowPtr found = FindWithin(*inner, matches)) return found;
    }
    return nullptr;
}

Outcome PressWhere(HWND window, const std::function<bool(const Window&)>& matches) {
    return ActOn(window, [&](const Window& dialog) -> Outcome {
        const WindowPtr button = FindWithin(dialog, [&](const Window& inner) {
            return inner.type == &kButtonClass && matches(inner);
        });
        if (!button) return {"no such button"};
        if (button->Has(WS_DISABLED)) return {"that button is disabled"};
        PostLocked(button->handle, BM_CLICK, 0, 0);
        return kDone;
    });
}

Outcome ChooseWhere(const std::function<bool(const user::MenuItem&)>& matches) {
    return Act([&](simulator::StateLock&) -> Outcome {
        const user::OpenMenu* const open = VisibleMenu();
        const auto menu = open ? LookupMenuLocked(open->menu) : nullptr;
        if (!menu) return {"no menu is open"};
        const auto item = std::find_if(menu->items.begin(), menu->items.end(), matches);
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
    const simulator::StateLock lock = simulator::LockState();
    TheDesktop().pointer = {x, y};
}

Outcome MoveOver(UINT icon) {
    {
        const simulator::StateLock lock = simulator::LockState();
        const RECT& screen = TheDesktop().screen;
        TheDesktop().pointer = {screen.right - 100,
                                (TheDesktop().workArea.bottom + screen.bottom) / 2};
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
    return Act([](simulator::StateLock&) -> Outcome {
        if (!VisibleMenu()) return {"no menu is open"};
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

Outcome PressKey(int key, HWND window) {
    const auto press = [=](const auto&) -> Outcome {
        if (VisibleMenu()) {
            if (key == VK_ESCAPE) CloseMenu(0);
            return kDone;
        }
        const HWND focus = TheDesktop().focus;
        if (!focus) return {"no window has the focus"};
        PostLocked(focus, WM_KEYDOWN, static_cast<WPARAM>(key), 0);
        return kDone;
    };
    return window ? ActOn(window, press) : Act(press);
}

Outcome ClickHeader(int column, HWND window, bool rightButton) {
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
        PostLocked(header->handle, rightButton ? WM_RBUTTONDOWN : WM_LBUTTONDOWN, 0, point);
        PostLocked(header->handle, rightButton ? WM_RBUTTONUP : WM_LBUTTONUP, 0, point);
        return kDone;
    });
}

Outcome LogOff() {
    return Act([](simulator::StateLock& lock) -> Outcome {
        CloseMenuFirst(lock);
        const auto windows = Unowned();
        if (windows.empty()) return {"no program has a window"};
        for (const HWND window : windows) PostLocked(window, WM_CLOSE, 0, 0);
        return kDone;
    });
}

Outcome Post(UINT message, WPARAM wParam, LPARAM lParam) {
    return Act([=](simulator::StateLock&) -> Outcome {
        const auto windows = Unowned();
        if (windows.empty()) return {"no program has a window"};
        PostLocked(windows.front(), message, wParam, lParam);
        return kDone;
    });
}

void Advance(std::chrono::milliseconds span) { simulator::Clock::Advance(span); }

bool WaitUntil(const std::function<bool()>& met, std::chrono::milliseconds limit) {
    constexpr std::chrono::milliseconds kPause{50};
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!met()) {
        if (std::chrono::steady_clock::now() >= end) return false;
        simulator::AwaitEvent(kPause);
    }
    return true;
}

}  // namespace desktop
