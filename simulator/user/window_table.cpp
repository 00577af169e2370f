// The table of windows: existence, Z order, creation and destruction.
#include "user/window.h"

#include <algorithm>
#include <utility>

#include "simulator/journal.h"
#include "core/waiting.h"
#include "core/last_error.h"
#include "user/desktop_state.h"
#include "user/dialog_state.h"
#include "user/queue.h"

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
    DesktopState& desktop = TheDesktop();
    if (desktop.focus == window.handle) desktop.focus = nullptr;
    Table().erase(window.handle);
    simulator::NotifyStateChanged();
}

std::vector<HWND> OwnedBy(HWND owner) {
    const simulator::StateLock lock = simulator::LockState();
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
    const simulator::StateLock lock = simulator::LockState();
    TakeOut(*window);
}

}  // namespace

WindowPtr LookupLocked(HWND handle) {
    const auto found = Table().find(handle);
    return found == Table().end() ? nullptr : found->second;
}

WindowPtr Lookup(HWND handle) {
    const simulator::StateLock lock = simulator::LockState();
    WindowPtr window = LookupLocked(handle);
    if (!window) SetLastError(ERROR_INVALID_WINDOW_HANDLE);
    return window;
}

std::size_t CountWindowsLocked() { return Table().size(); }

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

WindowPtr Create(const NewWindow& data) {
    auto window = std::make_shared<Window>();
    window->type = data.type;
    window->proc = data.type->proc;
    window->text = data.text;
    window->style = data.style;
    window->exStyle = data.exStyle;
    window->place = data.place;
    window->id = data.id;
    window->instance = data.instance;
    window->queue = ThisThreadsQueue();
    (window->Has(WS_CHILD) ? window->parent : window->owner) = data.parent;
    {
        const simulator::StateLock lock = simulator::LockState();
        window->handle = reinterpret_cast<HWND>(NewHandle());
        Table()[window->handle] = window;
        if (window->parent)
            LookupLocked(window->parent)->children.push_back(window->handle);
        else
            BringToFront(window->handle);
    }
    if (data.type->created) data.type->created(*window);
    return window;
}

// Owned windows are destroyed first. The window is removed from the desktop before it receives
// WM_DESTROY.
void Destroy(const WindowPtr& window) {
    ShowWindow(window->handle, SW_HIDE);
    for (const HWND owned : OwnedBy(window->handle))
        if (const WindowPtr living = Lookup(owned)) Destroy(living);
    SendDestroy(window);
    if (IsWindow(window->handle)) SendFinal(window);
}

HWND ChildOf(const Window& window, LONG_PTR id) {
    for (const HWND child : window.children)
        if (Lookup(child)->id == id) return child;
    return nullptr;
}

void DropWindowsOfThread() {
    const std::shared_ptr<Queue> queue = ThisThreadsQueue();
    std::vector<WindowPtr> dropped;
    const simulator::StateLock lock = simulator::LockState();
    for (const auto& [handle, window] : Table())
        if (window->queue == queue) dropped.push_back(window);
    for (const WindowPtr& window : dropped) TakeOut(*window);
}

}  // namespace user

using namespace user;

BOOL WINAPI IsWindow(HWND handle) {
    const simulator::StateLock lock = simulator::LockState();
    return LookupLocked(handle) != nullptr;
}

BOOL WINAPI DestroyWindow(HWND handle) {
    const WindowPtr window = Lookup(handle);
    if (!window) return FALSE;
    if (window->queue != ThisThreadsQueue()) return win32::Fail(ERROR_ACCESS_DENIED, FALSE);
    Destroy(window);
    return TRUE;
}
