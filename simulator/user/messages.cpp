// Posting, fetching and sending messages, and the timers of a queue.
#include <strings.h>

#include <algorithm>
#include <map>
#include <string>

#include "core/last_error.h"
#include "user/desktop_state.h"
#include "user/queue.h"
#include "user/window.h"

namespace user {
namespace {

using simulator::Clock;
using simulator::Ticks;

// The messages that a call wants to receive.
struct Filter {
    HWND window;
    UINT first;
    UINT last;

    bool Takes(const MSG& message) const {
        if (window && message.hwnd != window && !IsChildOf(message.hwnd)) return false;
        return (first == 0 && last == 0) || (message.message >= first && message.message <= last);
    }

private:
    bool IsChildOf(HWND inner) const {
        WindowPtr at = LookupLocked(inner);
        while (at && at->parent != window) at = LookupLocked(at->parent);
        return at != nullptr;
    }
};

MSG Made(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    const auto time = static_cast<DWORD>(Clock::Uptime() / simulator::kTicksPerMillisecond);
    return {window, message, wParam, lParam, time, TheDesktop().pointer};
}

MSG TimerMessage(const Timer& timer) {
    return Made(timer.window, WM_TIMER, timer.id, reinterpret_cast<LPARAM>(timer.proc));
}

bool TakePosted(Queue& queue, const Filter& filter, bool remove, MSG& message) {
    const auto found = std::find_if(queue.posted.begin(), queue.posted.end(),
                                    [&](const MSG& posted) { return filter.Takes(posted); });
    if (found == queue.posted.end()) return false;
    message = *found;
    if (remove) queue.posted.erase(found);
    return true;
}

bool TakeQuit(Queue& queue, bool remove, MSG& message) {
    if (!queue.quit) return false;
    message = Made(nullptr, WM_QUIT, static_cast<WPARAM>(*queue.quit), 0);
    if (remove) queue.quit.reset();
    return true;
}

// Of several timers that are due the one that has been due longest is first.
bool TakeTimer(Queue& queue, const Filter& filter, bool remove, MSG& message) {
    const Ticks now = Clock::Uptime();
    Timer* next = nullptr;
    for (Timer& timer : queue.timers)
        if (timer.due <= now && filter.Takes(TimerMessage(timer)) &&
            (!next || timer.due < next->due))
            next = &timer;
    if (!next) return false;
    message = TimerMessage(*next);
    if (remove) next->due = now + next->period;
    return true;
}

// In the order in which the kinds of messages are served.
bool Take(Queue& queue, const Filter& filter, bool remove, MSG& message) {
    return TakePosted(queue, filter, remove, message) || TakeQuit(queue, remove, message) ||
           TakeTimer(queue, filter, remove, message);
}

bool HasWork(Queue& queue) {
    MSG message;
    return Take(queue, {}, false, message);
}

std::optional<Ticks> NextDue(const Queue& queue) {
    std::optional<Ticks> due;
    for (const Timer& timer : queue.timers)
        if (!due || timer.due < *due) due = timer.due;
    return due;
}

// The thread sleeps here, and nowhere else, while it has no message to serve.
void AwaitWork(simulator::StateLock& lock, Queue& queue, const std::function<bool()>& goesOn) {
    simulator::WaitFor(
        lock, [&] { return HasWork(queue) || !goesOn(); }, NextDue(queue));
}

}  // namespace

std::shared_ptr<Queue> ThisThreadsQueue() {
    static thread_local const auto queue = std::make_shared<Queue>();
    return queue;
}

void PostLocked(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    LookupLocked(window)->queue->posted.push_back(Made(window, message, wParam, lParam));
    simulator::NotifyStateChanged();
}

void Post(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    const simulator::StateLock lock = simulator::LockState();
    if (LookupLocked(window)) PostLocked(window, message, wParam, lParam);
}

void ForgetWindow(HWND window) {
    const simulator::StateLock lock = simulator::LockState();
    Queue& queue = *LookupLocked(window)->queue;
    std::erase_if(queue.posted, [=](const MSG& message) { return message.hwnd == window; });
    std::erase_if(queue.timers, [=](const Timer& timer) { return timer.window == window; });
}

void RunModalLoop(const std::function<bool()>& goesOn, const std::function<bool(MSG&)>& consumes) {
    const std::shared_ptr<Queue> queue = ThisThreadsQueue();
    for (;;) {
        MSG message;
        {
            simulator::StateLock lock = simulator::LockState();
            AwaitWork(lock, *queue, goesOn);
            if (!goesOn() || !Take(*queue, {}, true, message)) return;
            if (message.message == WM_QUIT) {
                queue->quit = static_cast<int>(message.wParam);
                return;
            }
        }
        if (consumes(message)) continue;
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
}

}  // namespace user

using namespace user;

BOOL WINAPI GetMessageA(LPMSG message, HWND window, UINT first, UINT last) {
    if (simulator::InjectedFault<"GetMessageA">()) return -1;
    const std::shared_ptr<Queue> queue = ThisThreadsQueue();
    simulator::StateLock lock = simulator::LockState();
    const Filter filter{window, first, last};
    while (!Take(*queue, filter, true, *message)) {
        MSG probe;
        simulator::WaitFor(
            lock, [&] { return Take(*queue, filter, false, probe); }, NextDue(*queue));
    }
    return message->message != WM_QUIT;
}

BOOL WINAPI PeekMessageA(LPMSG message, HWND window, UINT first, UINT last, UINT remove) {
    const std::shared_ptr<Queue> queue = ThisThreadsQueue();
    const simulator::StateLock lock = simulator::LockState();
    return Take(*queue, {window, first, last}, remove & PM_REMOVE, *message);
}

// Keys produce no characters.
BOOL WINAPI TranslateMessage(const MSG*) { return FALSE; }

LRESULT WINAPI DispatchMessageA(const MSG* message) {
    if (message->message == WM_TIMER && message->lParam) {
        const auto proc = reinterpret_cast<TIMERPROC>(message->lParam);
        proc(message->hwnd, WM_TIMER, message->wParam, message->time);
        return 0;
    }
    if (!message->hwnd) return 0;
    return SendMessageA(message->hwnd, message->message, message->wParam, message->lParam);
}

BOOL WINAPI PostMessageA(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (win32::MustFail<"PostMessageA", "message">(message)) return FALSE;
    const simulator::StateLock lock = simulator::LockState();
    if (!LookupLocked(window)) return win32::Fail(ERROR_INVALID_WINDOW_HANDLE, FALSE);
    PostLocked(window, message, wParam, lParam);
    return TRUE;
}

// Within a thread only: this system sends no message to another thread.
LRESULT WINAPI SendMessageA(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
    const WindowPtr window = Lookup(handle);
    if (!window) return 0;
    if (window->queue != ThisThreadsQueue())
        win32::NotImplemented("SendMessageA to a window of another thread");
    return window->proc(handle, message, wParam, lParam);
}

void WINAPI PostQuitMessage(int exitCode) {
    const std::shared_ptr<Queue> queue = ThisThreadsQueue();
    const simulator::StateLock lock = simulator::LockState();
    queue->quit = exitCode;
}

UINT WINAPI RegisterWindowMessageA(LPCSTR name) {
    if (win32::MustFail<"RegisterWindowMessageA">()) return 0u;
    constexpr auto precedes = [](const std::string& left, const std::string& right) {
        return strcasecmp(left.c_str(), right.c_str()) < 0;
    };
    static auto& names = *new std::map<std::string, UINT, decltype(precedes)>;
    const simulator::StateLock lock = simulator::LockState();
    const auto next = static_cast<UINT>(0xC000 + names.size());
    return names.emplace(name, next).first->second;
}

UINT_PTR WINAPI SetTimer(HWND window, UINT_PTR id, UINT elapse, TIMERPROC proc) {
    if (win32::MustFail<"SetTimer">()) return 0u;
    const std::shared_ptr<Queue> queue = ThisThreadsQueue();
    const simulator::StateLock lock = simulator::LockState();
    if (window && !LookupLocked(window)) return win32::Fail(ERROR_INVALID_WINDOW_HANDLE, 0u);
    if (!window) id = NewHandle();
    std::erase_if(queue->timers,
                  [=](const Timer& timer) { return timer.window == window && timer.id == id; });
    const Ticks period =
        std::max(elapse, UINT{USER_TIMER_MINIMUM}) * simulator::kTicksPerMillisecond;
    queue->timers.push_back({window, id, period, Clock::Uptime() + period, proc});
    return window && id == 0 ? 1 : id;
}

BOOL WINAPI KillTimer(HWND window, UINT_PTR id) {
    const std::shared_ptr<Queue> queue = ThisThreadsQueue();
    const simulator::StateLock lock = simulator::LockState();
    return std::erase_if(queue->timers, [=](const Timer& timer) {
               return timer.window == window && timer.id == id;
           }) != 0;
}
