// What stands on the desktop, copied out while all threads are at rest.
#include "desktop/desktop.h"

#include <algorithm>
#include <utility>

#include "machine/waits.h"
#include "src/shutdown.h"
#include "src/user/desk.h"
#include "src/user/dialog_state.h"
#include "src/user/list_view.h"
#include "src/user/menu.h"
#include "src/user/window.h"

namespace desktop {
namespace {

using namespace user;

// Runs `look` while nothing moves.
template <class Look>
auto AtRest(Look look) {
    machine::WorldLock lock = machine::LockWorld();
    machine::Settle(lock);
    return look();
}

const DialogState* DialogOf(const Window& window) {
    return dynamic_cast<const DialogState*>(window.state.get());
}

Arrow ArrowOf(int format) {
    if (format & HDF_SORTDOWN) return Arrow::kDown;
    return format & HDF_SORTUP ? Arrow::kUp : Arrow::kNone;
}

std::optional<int> RowWith(const ListViewState& list, UINT state) {
    const auto found = std::find_if(list.rows.begin(), list.rows.end(),
                                    [=](const auto& row) { return row->state & state; });
    if (found == list.rows.end()) return std::nullopt;
    return static_cast<int>(found - list.rows.begin());
}

List LookAt(const Window& window, const ListViewState& list) {
    List seen{{},
              {},
              RowWith(list, LVIS_SELECTED),
              RowWith(list, LVIS_FOCUSED),
              window.redraws,
              list.extendedStyle};
    const auto* header = StateOf<HeaderState>(LookupLocked(list.header));
    for (const HeaderItem& item : header->items)
        seen.columns.push_back({item.text, item.width, ArrowOf(item.format), item.bitmap});
    for (const auto& row : list.rows) {
        std::vector<std::string> cells;
        for (std::size_t i = 0; i < header->items.size(); ++i)
            cells.push_back(row->Cell(static_cast<int>(i)));
        seen.rows.push_back(std::move(cells));
    }
    return seen;
}

Control LookAt(const Window& window, const DialogState& dialog) {
    Control seen{};
    seen.id = static_cast<int>(window.id);
    seen.className = window.type->name;
    seen.text = PlainText(window.text);
    seen.place = window.place;
    seen.visible = window.Has(WS_VISIBLE);
    seen.enabled = !window.Has(WS_DISABLED);
    seen.isDefault = window.type == &kButtonClass && window.id == dialog.defaultButton;
    seen.focused = TheDesk().focus == window.handle;
    if (const auto* list = dynamic_cast<const ListViewState*>(window.state.get()))
        seen.list = LookAt(window, *list);
    return seen;
}

Dialog LookAt(const Window& window) {
    Dialog seen{window.handle, window.text, window.place, !window.Has(WS_DISABLED), {}, {}};
    for (const HWND child : window.children) {
        const WindowPtr inner = LookupLocked(child);
        if (!DialogOf(*inner))
            seen.controls.push_back(LookAt(*inner, *DialogOf(window)));
        else if (inner->Has(WS_VISIBLE))
            seen.pages.push_back(LookAt(*inner));
    }
    return seen;
}

Box LookAt(const Window& window, const BoxFacts& box) {
    Box seen{
        window.handle, window.text, box.text, box.icon, (window.exStyle & WS_EX_TOPMOST) != 0, {}};
    for (const HWND child : window.children)
        if (const WindowPtr inner = LookupLocked(child); inner->type == &kButtonClass)
            seen.buttons.push_back(PlainText(inner->text));
    return seen;
}

// The visible dialogs, message boxes among them, front one first.
std::vector<WindowPtr> OnTheScreen() {
    std::vector<WindowPtr> seen;
    for (const HWND handle : TopLevelWindows()) {
        WindowPtr window = LookupLocked(handle);
        if (window->Has(WS_VISIBLE) && DialogOf(*window)) seen.push_back(std::move(window));
    }
    return seen;
}

}  // namespace

const Control* Dialog::Find(int id) const {
    const auto found = std::find_if(controls.begin(), controls.end(),
                                    [=](const Control& control) { return control.id == id; });
    return found == controls.end() ? nullptr : &*found;
}

const List* Dialog::FirstList() const {
    for (const Control& control : controls)
        if (control.list) return &*control.list;
    return nullptr;
}

std::vector<Icon> Icons() {
    return AtRest([] {
        std::vector<Icon> seen;
        for (const TrayIcon& icon : TheDesk().icons)
            seen.push_back({icon.id, icon.image, icon.tip, icon.balloonTitle, icon.balloonText,
                            icon.balloonKind, icon.balloons, icon.version});
        return seen;
    });
}

std::optional<Icon> FindIcon(UINT id) {
    for (Icon& icon : Icons())
        if (icon.id == id) return std::move(icon);
    return std::nullopt;
}

std::vector<Box> Boxes() {
    return AtRest([] {
        std::vector<Box> seen;
        for (const WindowPtr& window : OnTheScreen())
            if (const auto& box = DialogOf(*window)->box) seen.push_back(LookAt(*window, *box));
        return seen;
    });
}

std::vector<Dialog> Dialogs() {
    return AtRest([] {
        std::vector<Dialog> seen;
        for (const WindowPtr& window : OnTheScreen())
            if (!DialogOf(*window)->box) seen.push_back(LookAt(*window));
        return seen;
    });
}

std::optional<Dialog> FindDialog(std::string_view caption) {
    for (Dialog& dialog : Dialogs())
        if (dialog.caption == caption) return std::move(dialog);
    return std::nullopt;
}

std::optional<desktop::Menu> OpenMenu() {
    return AtRest([]() -> std::optional<desktop::Menu> {
        const auto& open = TheDesk().menu;
        const auto menu = open ? LookupMenuLocked(open->menu) : nullptr;
        if (!menu) return std::nullopt;
        desktop::Menu seen{open->place, {}};
        for (const user::MenuItem& item : menu->items)
            seen.items.push_back({item.id, PlainText(item.text), item.id == menu->defaultItem});
        return seen;
    });
}

std::vector<std::string> Pages() {
    return AtRest([] { return TheDesk().pages; });
}

std::vector<Reboot> Reboots() {
    return AtRest([] {
        std::vector<Reboot> seen;
        for (const win32::Shutdown& request : win32::RequestedShutdowns())
            seen.push_back({request.flags, request.reason});
        return seen;
    });
}

std::string Foreground() {
    return AtRest([] { return TheDesk().foregroundCaption; });
}

int Beeps() {
    return AtRest([] { return TheDesk().beeps; });
}

int WaitCursors() {
    return AtRest([] { return TheDesk().waitCursors; });
}

std::vector<Event> Journal() {
    return AtRest([] { return machine::Events(); });
}

void Forget() {
    AtRest([] {
        machine::ForgetEvents();
        win32::ForgetShutdowns();
        TheDesk().pages.clear();
        TheDesk().beeps = 0;
        TheDesk().waitCursors = 0;
        return true;
    });
}

void Subscribe(std::function<void(const Event&)> subscriber) {
    machine::SubscribeEvents(std::move(subscriber));
}

}  // namespace desktop
