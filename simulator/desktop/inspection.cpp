// The state of the desktop, copied while every thread is idle.
#include "simulator/desktop.h"

#include <algorithm>
#include <utility>

#include "core/waiting.h"
#include "kernel/shutdown.h"
#include "user/desktop_state.h"
#include "user/dialog_state.h"
#include "user/drawing.h"
#include "user/list_view.h"
#include "user/menu.h"
#include "user/window.h"

namespace desktop {
namespace {

using namespace user;

// Calls `inspect` while every thread is idle.
template <class Inspect>
auto WhileIdle(Inspect inspect) {
    simulator::StateLock lock = simulator::LockState();
    simulator::WaitUntilIdle(lock);
    return inspect();
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

List Inspect(const Window& window, const ListViewState& list) {
    List seen{{},
              {},
              RowWith(list, LVIS_SELECTED),
              RowWith(list, LVIS_FOCUSED),
              window.redraws,
              list.extendedStyle};
    const auto* header = StateOf<HeaderState>(LookupLocked(list.header));
    for (const HeaderItem& item : header->items)
        seen.columns.push_back({item.text, item.width, ArrowOf(item.format), item.bitmap,
                                PolygonInLocked(item.bitmap)});
    for (const auto& row : list.rows) {
        std::vector<std::string> cells;
        for (std::size_t i = 0; i < header->items.size(); ++i)
            cells.push_back(row->Cell(static_cast<int>(i)));
        seen.rows.push_back(std::move(cells));
    }
    return seen;
}

Control Inspect(const Window& window, const DialogState& dialog) {
    Control seen{};
    seen.id = static_cast<int>(window.id);
    seen.className = window.type->name;
    seen.text = PlainText(window.text);
    seen.place = window.place;
    seen.visible = window.Has(WS_VISIBLE);
    seen.enabled = !window.Has(WS_DISABLED);
    seen.isDefault = window.type == &kButtonClass && window.id == dialog.defaultButton;
    seen.focused = TheDesktop().focus == window.handle;
    if (const auto* list = dynamic_cast<const ListViewState*>(window.state.get()))
        seen.list = Inspect(window, *list);
    return seen;
}

Dialog Inspect(const Window& window) {
    Dialog seen{window.handle, window.text, window.place, !window.Has(WS_DISABLED), {}, {}};
    for (const HWND child : window.children) {
        const WindowPtr inner = LookupLocked(child);
        if (!DialogOf(*inner))
            seen.controls.push_back(Inspect(*inner, *DialogOf(window)));
        else if (inner->Has(WS_VISIBLE))
            seen.pages.push_back(Inspect(*inner));
    }
    return seen;
}

Box Inspect(const Window& window, const BoxFacts& box) {
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
    return WhileIdle([] {
        std::vector<Icon> seen;
        for (const TrayIcon& icon : TheDesktop().icons)
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
    return WhileIdle([] {
        std::vector<Box> seen;
        for (const WindowPtr& window : OnTheScreen())
            if (const auto& box = DialogOf(*window)->box) seen.push_back(Inspect(*window, *box));
        return seen;
    });
}

std::vector<Dialog> Dialogs() {
    return WhileIdle([] {
        std::vector<Dialog> seen;
        for (const WindowPtr& window : OnTheScreen())
            if (!DialogOf(*window)->box) seen.push_back(Inspect(*window));
        return seen;
    });
}

std::optional<Dialog> FindDialog(std::string_view caption) {
    for (Dialog& dialog : Dialogs())
        if (dialog.caption == caption) return std::move(dialog);
    return std::nullopt;
}

std::optional<desktop::Menu> OpenMenu() {
    return WhileIdle([]() -> std::optional<desktop::Menu> {
        const user::OpenMenu* const open = VisibleMenu();
        const auto menu = open ? LookupMenuLocked(open->menu) : nullptr;
        if (!menu) return std::nullopt;
        desktop::Menu seen{open->place, {}};
        for (const user::MenuItem& item : menu->items)
            seen.items.push_back({item.id, PlainText(item.text), item.id == menu->defaultItem});
        return seen;
    });
}

std::vector<std::string> Pages() {
    return WhileIdle([] { return TheDesktop().pages; });
}

std::vector<Reboot> Reboots() {
    return WhileIdle([] {
        std::vector<Reboot> seen;
        for (const win32::Shutdown& request : win32::RequestedShutdowns())
            seen.push_back({request.flags, request.reason});
        return seen;
    });
}

std::string Foreground() {
    return WhileIdle([] { return TheDesktop().foregroundCaption; });
}

int Beeps() {
    return WhileIdle([] { return TheDesktop().beeps; });
}

int WaitCursors() {
    return WhileIdle([] { return TheDesktop().waitCursors; });
}

std::vector<Event> Journal() {
    return WhileIdle([] { return simulator::Events(); });
}

void Forget() {
    WhileIdle([] {
        simulator::ForgetEvents();
        win32::ForgetShutdowns();
        TheDesktop().pages.clear();
        TheDesktop().beeps = 0;
        TheDesktop().waitCursors = 0;
        return true;
    });
}

void Subscribe(std::function<void(const Event&)> subscriber) {
    simulator::SubscribeEvents(std::move(subscriber));
}

}  // namespace desktop
