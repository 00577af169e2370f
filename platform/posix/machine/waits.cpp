#include "machine/waits.h"

#include <algorithm>
#include <condition_variable>
#include <list>
#include <utility>
#include <vector>

namespace machine {
namespace {

struct Waiter {
    const std::function<bool()>* ready;
    std::optional<Ticks> deadline;
    const ThreadMark* mark;  // null: a thread that nobody reckons with
    std::condition_variable wake;

    bool AtRest() const { return !(*ready)() && !(deadline && Clock::Uptime() >= *deadline); }
};

struct World {
    std::mutex mutex;
    std::list<Waiter*> waiters;
    std::condition_variable rest;  // somebody came to rest, or a marked thread ended
    int markedThreads = 0;
    std::vector<std::function<void()>> outside;
};

// Never destroyed: a thread may still wait in it while the process ends.
World& TheWorld() {
    static World& world = *new World;
    return world;
}

thread_local ThreadMark* t_mark = nullptr;

bool OthersAtRest(const World& world) {
    int resting = t_mark ? 1 : 0;
    for (const Waiter* waiter : world.waiters) {
        if (!waiter->mark) continue;
        if (!waiter->AtRest()) return false;
        ++resting;
    }
    return resting == world.markedThreads;
}

[[noreturn]] void StopForGood(WorldLock& lock) {
    std::condition_variable never;
    for (;;) never.wait(lock);
}

}  // namespace

WorldLock LockWorld() { return WorldLock(TheWorld().mutex); }

bool WaitFor(WorldLock& lock, const std::function<bool()>& ready, std::optional<Ticks> deadline) {
    World& world = TheWorld();
    if (t_mark && t_mark->m_abandoned) StopForGood(lock);
    if (ready()) return true;
    Waiter self{&ready, deadline, t_mark, {}};
    const auto place = world.waiters.insert(world.waiters.end(), &self);
    bool met = false;
    while (!(met = ready()) && !(deadline && Clock::Uptime() >= *deadline)) {
        world.rest.notify_all();
        if (deadline && !Clock::IsHeld()) {
            const Ticks left = *deadline - Clock::Uptime();
            self.wake.wait_for(lock, std::chrono::nanoseconds(std::max<Ticks>(left, 0) * 100));
        } else {
            self.wake.wait(lock);
        }
        if (t_mark && t_mark->m_abandoned) StopForGood(lock);
    }
    world.waiters.erase(place);
    return met;
}

void WorldChanged() {
    for (Waiter* waiter : TheWorld().waiters)
        if (!waiter->AtRest()) waiter->wake.notify_one();
}

ThreadMark::ThreadMark() {
    const WorldLock lock = LockWorld();
    ++TheWorld().markedThreads;
}

ThreadMark::~ThreadMark() { Leave(); }

void ThreadMark::Enter() { t_mark = this; }

void ThreadMark::Leave() {
    const WorldLock lock = LockWorld();
    if (t_mark == this) t_mark = nullptr;
    if (!std::exchange(m_counted, false)) return;
    --TheWorld().markedThreads;
    TheWorld().rest.notify_all();
}

void ThreadMark::Abandon() {
    if (!std::exchange(m_counted, false)) return;
    m_abandoned = true;
    World& world = TheWorld();
    world.waiters.remove_if([this](const Waiter* waiter) { return waiter->mark == this; });
    --world.markedThreads;
    world.rest.notify_all();
}

void Settle(WorldLock& lock) {
    World& world = TheWorld();
    for (;;) {
        const auto sources = world.outside;
        lock.unlock();
        for (const auto& poll : sources) poll();
        lock.lock();
        if (OthersAtRest(world)) return;
        world.rest.wait(lock, [&] { return OthersAtRest(world); });
    }
}

void AddOutsideSource(std::function<void()> poll) {
    const WorldLock lock = LockWorld();
    TheWorld().outside.push_back(std::move(poll));
}

std::optional<Ticks> NextDeadline() {
    std::optional<Ticks> next;
    for (const Waiter* waiter : TheWorld().waiters)
        if (waiter->deadline && (!next || *waiter->deadline < *next)) next = waiter->deadline;
    return next;
}

}  // namespace machine
