#include "core/waiting.h"

#include <algorithm>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <list>
#include <utility>
#include <vector>

namespace simulator {
namespace {

struct Waiter {
    const std::function<bool()>* ready;
    std::optional<Ticks> deadline;
    const ThreadRegistration* registration;  // null: a thread that is not registered
    std::condition_variable wake;

    bool IsIdle() const { return !(*ready)() && !(deadline && Clock::Uptime() >= *deadline); }
};

struct State {
    std::mutex mutex;
    std::list<Waiter*> waiters;
    std::condition_variable idle;  // a thread became idle, or a registered thread ended
    int registeredThreads = 0;
    std::vector<std::function<void()>> externalSources;
};

// Never destroyed: a thread may still wait in it while the process ends.
State& TheState() {
    static State& state = *new State;
    return state;
}

thread_local ThreadRegistration* t_registration = nullptr;

bool OthersAreIdle(const State& state) {
    int idleThreads = t_registration ? 1 : 0;
    for (const Waiter* waiter : state.waiters) {
        if (!waiter->registration) continue;
        if (!waiter->IsIdle()) return false;
        ++idleThreads;
    }
    return idleThreads == state.registeredThreads;
}

// Where the calling thread has taken the lock that it holds.
thread_local std::optional<SourcePlace> t_lockedAt;

[[noreturn]] void StopForGood(StateLock& lock) {
    std::condition_variable never;
    for (;;) never.wait(lock.Mutex());
}

}  // namespace

void StateLock::Lock(SourcePlace place) {
    if (t_lockedAt) {
        std::fprintf(stderr, "The state lock is taken at %s:%d and again at %s:%d\n",
                     t_lockedAt->file, t_lockedAt->line, place.file, place.line);
        std::abort();
    }
    m_lock = std::unique_lock(TheState().mutex);
    t_lockedAt = place;
}

void StateLock::Unlock() {
    t_lockedAt.reset();
    m_lock.unlock();
}

StateLock::~StateLock() {
    if (m_lock.owns_lock()) t_lockedAt.reset();
}

bool WaitFor(StateLock& lock, const std::function<bool()>& ready, std::optional<Ticks> deadline) {
    State& state = TheState();
    if (t_registration && t_registration->IsAbandoned()) StopForGood(lock);
    if (ready()) return true;
    Waiter self{&ready, deadline, t_registration, {}};
    const auto place = state.waiters.insert(state.waiters.end(), &self);
    bool met = false;
    while (!(met = ready()) && !(deadline && Clock::Uptime() >= *deadline)) {
        state.idle.notify_all();
        if (deadline && !Clock::IsManual()) {
            const Ticks left = *deadline - Clock::Uptime();
            self.wake.wait_for(lock.Mutex(),
                               std::chrono::nanoseconds(std::max<Ticks>(left, 0) * 100));
        } else {
            self.wake.wait(lock.Mutex());
        }
        if (t_registration && t_registration->IsAbandoned()) StopForGood(lock);
    }
    state.waiters.erase(place);
    return met;
}

void NotifyStateChanged() {
    for (Waiter* waiter : TheState().waiters)
        if (!waiter->IsIdle()) waiter->wake.notify_one();
}

ThreadRegistration::ThreadRegistration() {
    const StateLock lock = LockState();
    ++TheState().registeredThreads;
}

ThreadRegistration::~ThreadRegistration() { Leave(); }

void ThreadRegistration::Enter() { t_registration = this; }

void ThreadRegistration::Leave() {
    const StateLock lock = LockState();
    if (t_registration == this) t_registration = nullptr;
    if (!std::exchange(m_counted, false)) return;
    --TheState().registeredThreads;
    TheState().idle.notify_all();
}

void ThreadRegistration::Abandon() {
    if (!std::exchange(m_counted, false)) return;
    m_abandoned = true;
    State& state = TheState();
    state.waiters.remove_if([this](const Waiter* waiter) { return waiter->registration == this; });
    --state.registeredThreads;
    state.idle.notify_all();
}

void WaitUntilIdle(StateLock& lock) {
    State& state = TheState();
    for (;;) {
        const auto sources = state.externalSources;
        lock.Unlock();
        for (const auto& poll : sources) poll();
        lock.Lock();
        if (OthersAreIdle(state)) return;
        state.idle.wait(lock.Mutex(), [&] { return OthersAreIdle(state); });
    }
}

void WaitUntilIdle() {
    StateLock lock = LockState();
    WaitUntilIdle(lock);
}

void AddExternalSource(std::function<void()> poll) {
    const StateLock lock = LockState();
    TheState().externalSources.push_back(std::move(poll));
}

std::optional<Ticks> NextDeadline() {
    std::optional<Ticks> next;
    for (const Waiter* waiter : TheState().waiters)
        if (waiter->deadline && (!next || *waiter->deadline < *next)) next = waiter->deadline;
    return next;
}

}  // namespace simulator
