// How the threads of the simulated machine wait, and how an observer knows that all of them do.
//
// All state that a thread can wait for (events, queues, timers, ends of threads) changes under
// one lock, the lock of the world. A waiting thread leaves its condition behind as a predicate
// without side effects, so anybody who holds the lock can tell whether it is at rest. While all
// threads are at rest and the lock is held, nothing moves: that is how the desktop is looked at.
#pragma once

#include <functional>
#include <mutex>
#include <optional>

#include "machine/clock.h"

namespace machine {

using WorldLock = std::unique_lock<std::mutex>;

WorldLock LockWorld();

// Blocks the calling thread until `ready` holds (true) or Clock::Uptime() reaches `deadline`
// (false). `ready` is called under the lock, also by other threads.
bool WaitFor(WorldLock& lock, const std::function<bool()>& ready,
             std::optional<Ticks> deadline = std::nullopt);

// To be called under the lock after a change that somebody may be waiting for.
void WorldChanged();

// A thread that Settle has to reckon with. The thread that starts it makes the mark, so that no
// moment passes in which it runs unseen; the new thread calls Enter first and Leave last.
class ThreadMark {
public:
    ThreadMark();
    ~ThreadMark();
    ThreadMark(const ThreadMark&) = delete;
    ThreadMark& operator=(const ThreadMark&) = delete;

    void Enter();
    void Leave();

    // Gives the thread up, under the lock: nobody reckons with it any more, and where it next waits
    // it stops for good, with all that it holds.
    void Abandon();

private:
    friend bool WaitFor(WorldLock&, const std::function<bool()>&, std::optional<Ticks>);

    bool m_counted = true;
    bool m_abandoned = false;
};

// Waits until every marked thread but the caller is at rest: in WaitFor, with its condition
// unmet and its deadline not reached. Returns under the lock, with the world at rest.
void Settle(WorldLock& lock);

// Registers a poll for changes from outside the process, which Settle calls first. It is called
// without the lock and brings in what has happened so far.
void AddOutsideSource(std::function<void()> poll);

// The next deadline of any waiting thread, if one waits with a deadline. Called under the lock.
std::optional<Ticks> NextDeadline();

}  // namespace machine
