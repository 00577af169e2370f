// The table of windows: who lives, who stands in front, how a window comes and goes.
#include "src/user/window.h"

#include <algorithm>
#include <utility>

#include "machine/journal.h"
#include "machine/waits.h"
#include "src/last_error.h"
#include "src/user/desk.h"
#include "src/user/dialog_state.h"
#include "src/user/queue.h"

namespace user {
namespace {

std::map<HWND, WindowPtr>& Table() {
    static auto& table = *new std::map<HWND, WindowPtr>;
    return table;
}

std::vector<HWND>& ZOrder() {
    static auto& order = *new std::vector<HWND>;
    return order;
}

void TakeOut(Window& window) {
    if (const WindowPtr parent = LookupLocked(window.parent))
        std::erase(parent->children, window.handle);
    std::erase(ZOrder(), window.handle);
    Desk& desk = TheDesk();
    if (desk.focus == window.handle) desk.focus = nullptr;
    if (desk.foreground == window.handle) desk.foreground = nullptr;
    Table().erase(window.handle);
    machine::WorldChanged();
}

std::vector<HWND> OwnedBy(HWND owner) {
    const machine::WorldLock lock = machine::LockWorld();
    std::vector<HWND> owned;
    for (const HWND window : ZOrder())
        if (LookupLocked(window)->owner == owner) owned.push_back(window);
    return owned;
}

void SendDestroy(const WindowPtr& window) {
    SendMessageA(window->handle, WM_DESTROY, 0, 0);
    for (const HWND child : std::vector(window->children))
        if (const WindowPtr living = Lookup(child)) SendDestroy(living);
}

void SendFinal(const WindowPtr& window) {
    for (const HWND child : std::vector(window->children))
        if (const WindowPtr living = Lookup(child)) SendFinal(living);
    SendMessageA(window->handle, WM_NCDESTROY, 0, 0);
    ForgetWindow(window->handle);
    const machine::WorldLock lock = machine::LockWorld();
    TakeOut(*window);
}

}  // namespace

WindowPtr LookupLocked(HWND handle) {
    const auto found = Table().find(handle);
    return found == Table().end() ? nullptr : found->second;
}

WindowPtr Lookup(HWND handle) {
    const machine::WorldLock lock = machine::LockWorld();
    WindowPtr window = LookupLocked(handle);
    if (!window) SetLastError(ERROR_INVALID_WINDOW_HANDLE);
    return window;
}

const std::vector<HWND>& TopLevelWindows() { return ZOrder(); }

// Topmost windows stay before all others.
void BringToFront(HWND topLevel) {
    std::erase(ZOrder(), topLevel);
    auto place = ZOrder().begin();
    if (!(LookupLocked(topLevel)->exStyle & WS_EX_TOPMOST))
        place = std::find_if(ZOrder().begin(), ZOrder().end(), [](HWND window) {
            return !(LookupLocked(window)->exStyle & WS_EX_TOPMOST);
        });
    ZOrder().insert(place, topLevel);
}

HWND RootOf(HWND window) {
    WindowPtr root = LookupLocked(window);
    while (root && root->parent) root = LookupLocked(root->parent);
    return root ? root->handle : nullptr;
}

RECT OnScreen(const Window& window) {
    RECT place = window.place;
    for (WindowPtr above = LookupLocked(window.parent); above;
         above = LookupLocked(above->parent)) {
        place.left += above->place.left;
        place.right += above->place.left;
        place.top += above->place.top;
        place.bottom += above->place.top;
    }
    return place;
}

WindowPtr Create(const NewWindow& wanted) {
    auto window = std::make_shared<Window>();
    window->type = wanted.type;
    window->proc = wanted.type->proc;
    window->text = wanted.text;
    window->style = wanted.style;
    window->exStyle = wanted.exStyle;
    window->place = wanted.place;
    window->id = wanted.id;
    window->instance = wanted.instance;
    window->queue = ThisThreadsQueue();
    (window->Has(WS_CHILD) ? window->parent : window->owner) = wanted.parent;
    {
        const machine::WorldLock lock = machine::LockWorld();
        window->handle = reinterpret_cast<HWND>(NewHandle());
        Table()[window->handle] = window;
        if (window->parent)
            LookupLocked(window->parent)->children.push_back(window->handle);
        else
            BringToFront(window->handle);
    }
    if (wanted.type->created) wanted.type->created(*window);
    return window;
}

void DropWindowsOfThread() {
    const std::shared_ptr<Queue> queue = ThisThreadsQueue();
    std::vector<WindowPtr> dropped;
    const machine::WorldLock lock = machine::LockWorld();
    for (const auto& [handle, window] : Table())
        if (window->queue == queue) dropped.push_back(window);
    for (const WindowPtr& window : dropped) TakeOut(*window);
}

}  // namespace user

using namespace user;

BOOL WINAPI IsWindow(HWND handle) {
    const machine::WorldLock lock = machine::LockWorld();
    return LookupLocked(handle) != nullptr;
}

// Owned windows go first. The window is off the desktop before it hears of its end.
BOOL WINAPI DestroyWindow(HWND handle) {
    const WindowPtr window = Lookup(handle);
    if (!window) return FALSE;
    if (window->queue != ThisThreadsQueue()) return win32::Fail(ERROR_ACCESS_DENIED, FALSE);
    ShowWindow(handle, SW_HIDE);
    for (const HWND owned : OwnedBy(handle)) DestroyWindow(owned);
    SendDestroy(window);
    if (IsWindow(handle)) SendFinal(window);
    return TRUE;
}
