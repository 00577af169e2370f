// The message queue of a thread: posted messages, the quit message, timers.
#pragma once

#include <windows.h>

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "machine/waits.h"

namespace user {

struct Timer {
    HWND window;
    UINT_PTR id;
    machine::Ticks period;
    machine::Ticks due;  // on the scale of Clock::Uptime
    TIMERPROC proc;
};

// Under the lock of the world.
struct Queue {
    std::deque<MSG> posted;
    std::optional<int> quit;
    std::vector<Timer> timers;
};

std::shared_ptr<Queue> ThisThreadsQueue();

// Adds a message to the queue of the window's thread. The caller holds the lock.
void PostLocked(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

// Forgets messages and timers of a window that goes.
void ForgetWindow(HWND window);

// Serves the thread's queue, as every modal loop does, while `goesOn` holds. `goesOn` is asked
// under the lock after each message and whenever the world changes. `translate` sees each message
// first and tells whether it has consumed it. A quit message ends the loop and is left for the
// loop outside.
void RunModalLoop(const std::function<bool()>& goesOn, const std::function<bool(MSG&)>& consumes);

}  // namespace user
