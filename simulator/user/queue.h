// The message queue of a thread: posted messages, the quit message, timers.
#pragma once

#include <windows.h>

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "core/waiting.h"

namespace user {

struct Timer {
    HWND window;
    UINT_PTR id;
    simulator::Ticks period;
    simulator::Ticks due;  // on the scale of Clock::Uptime
    TIMERPROC proc;
};

// Under the state lock.
struct Queue {
    std::deque<MSG> posted;
    std::optional<int> quit;
    std::vector<Timer> timers;
};

std::shared_ptr<Queue> ThisThreadsQueue();

// Adds a message to the queue of the window's thread. The caller holds the lock.
void PostLocked(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

// Posts what the system itself posts; does nothing if the window is gone.
void Post(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

// Discards messages and timers of a window that is destroyed.
void ForgetWindow(HWND window);

// Serves the thread's queue, as every modal loop does, while `goesOn` holds. `goesOn` is called
// under the lock after each message and whenever the state changes. `translate` sees each message
// first and returns whether it has consumed it. A quit message ends the loop and is left for the
// loop outside.
void RunModalLoop(const std::function<bool()>& goesOn, const std::function<bool(MSG&)>& consumes);

}  // namespace user
