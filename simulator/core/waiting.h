// How the simulated threads wait, and how an observer finds that all of them are idle.
//
// One lock guards everything that a thread can wait for: events, queues, timers, ends of threads. A
// waiting thread stores its condition as a predicate without side effects, so a thread that holds
// the lock can determine whether the thread is idle. While all threads are idle and the lock is
// held, the state does not change: this is how the desktop is inspected.
#pragma once

#include <functional>
#include <mutex>
#include <optional>

#include "simulator/clock.h"
#include "simulator/threads.h"

namespace simulator {

// The source location of a call that has Current as a default argument. The compiler for fuzzing
// has no std::source_location.
struct SourcePlace {
    const char* file;
    int line;

    static constexpr SourcePlace Current(const char* file = __builtin_FILE(),
                                         int line = __builtin_LINE()) {
        return {file, line};
    }
};

// Holds the lock while the object exists. If the thread holds it already, the program ends with
// both locations.
class StateLock {
public:
    explicit StateLock(SourcePlace place) { Lock(place); }
    ~StateLock();
    StateLock(const StateLock&) = delete;
    StateLock& operator=(const StateLock&) = delete;

    // Releases the lock for a while, and takes it again.
    void Unlock();
    void Lock(SourcePlace place = SourcePlace::Current());

    // For waits on condition variables.
    std::unique_lock<std::mutex>& Mutex() { return m_lock; }

private:
    std::unique_lock<std::mutex> m_lock;
};

inline StateLock LockState(SourcePlace place = SourcePlace::Current()) { return StateLock(place); }

// Blocks the calling thread until `ready` holds (true) or Clock::Uptime() reaches `deadline`
// (false). `ready` is called under the lock, also by other threads.
bool WaitFor(StateLock& lock, const std::function<bool()>& ready,
             std::optional<Ticks> deadline = std::nullopt);

// To be called under the lock after a change that a thread may be waiting for.
void NotifyStateChanged();

// Waits until every registered thread but the caller is idle: in WaitFor, with its condition unmet
// and its deadline not reached. Returns under the lock.
void WaitUntilIdle(StateLock& lock);

// Registers a poll for changes from outside the process, which WaitUntilIdle calls first. It is
// called without the lock and processes all changes so far.
void AddExternalSource(std::function<void()> poll);

// The next deadline of any waiting thread, if one waits with a deadline. Called under the lock.
std::optional<Ticks> NextDeadline();

}  // namespace simulator
