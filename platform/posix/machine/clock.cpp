#include "machine/clock.h"

#include <atomic>

#include "machine/waits.h"

namespace machine {
namespace {

// The held date; 0 while the clock is the real one.
std::atomic<Ticks> g_held{0};

template <class RealClock>
Ticks TicksOf() {
    const auto now = RealClock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::nanoseconds>(now).count() / 100;
}

}  // namespace

Ticks Clock::Now() {
    const Ticks held = g_held;
    return held ? held : kUnixEpoch + TicksOf<std::chrono::system_clock>();
}

Ticks Clock::Uptime() {
    const Ticks held = g_held;
    return held ? held : TicksOf<std::chrono::steady_clock>();
}

void Clock::Hold(Ticks date) { g_held = date; }

void Clock::Release() { g_held = 0; }

bool Clock::IsHeld() { return g_held != 0; }

void Clock::Advance(std::chrono::milliseconds span) {
    WorldLock lock = LockWorld();
    Settle(lock);
    const Ticks end = g_held + span.count() * kTicksPerMillisecond;
    for (;;) {
        const auto next = NextDeadline();
        const bool stop = !next || *next >= end;
        g_held = stop ? end : *next;
        WorldChanged();
        Settle(lock);
        if (stop) return;
    }
}

}  // namespace machine
