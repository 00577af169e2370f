#include "simulator/clock.h"

#include <atomic>

#include "core/waiting.h"

namespace simulator {
namespace {

// The date of the manual clock; 0 while the clock is the real one.
std::atomic<Ticks> g_manual{0};

template <class RealClock>
Ticks TicksOf() {
    const auto now = RealClock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::nanoseconds>(now).count() / 100;
}

}  // namespace

Ticks Clock::Now() {
    const Ticks manual = g_manual;
    return manual ? manual : kUnixEpoch + TicksOf<std::chrono::system_clock>();
}

Ticks Clock::Uptime() {
    const Ticks manual = g_manual;
    return manual ? manual : TicksOf<std::chrono::steady_clock>();
}

void Clock::SetManual(Ticks date) { g_manual = date; }

void Clock::SetReal() { g_manual = 0; }

bool Clock::IsManual() { return g_manual != 0; }

void Clock::Advance(std::chrono::milliseconds span) {
    StateLock lock = LockState();
    WaitUntilIdle(lock);
    const Ticks end = g_manual + span.count() * kTicksPerMillisecond;
    for (;;) {
        const auto next = NextDeadline();
        const bool stop = !next || *next >= end;
        g_manual = stop ? end : *next;
        NotifyStateChanged();
        WaitUntilIdle(lock);
        if (stop) return;
    }
}

}  // namespace simulator
