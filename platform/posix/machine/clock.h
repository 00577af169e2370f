// The one clock of the simulated machine.
//
// GetSystemTime, the waits, the timers, the registry's last-write times and the files that a
// simulated daemon writes all go by it. It is the real clock until a test holds it; from then
// on time stands still and moves only by Advance.
#pragma once

#include <chrono>
#include <cstdint>

namespace machine {

// 100-nanosecond ticks; as a date, since 1 January 1601 UTC.
using Ticks = std::int64_t;

constexpr Ticks kTicksPerMillisecond = 10'000;
constexpr Ticks kTicksPerSecond = 10'000'000;
constexpr Ticks kUnixEpoch = 116'444'736'000'000'000;  // 1 January 1970 as a date in ticks

class Clock {
public:
    // The date, UTC.
    static Ticks Now();

    // Ticks on a scale that never jumps, the one that deadlines are reckoned on.
    static Ticks Uptime();

    // Stops the clock at the given date. Call it while no simulated thread runs.
    static void Hold(Ticks date);

    // Goes back to the real clock. Call it while no simulated thread runs.
    static void Release();

    static bool IsHeld();

    // Moves a held clock on. Time stops on the way at each deadline that a waiting thread has,
    // and goes on when all simulated threads are at rest again (see waits.h), so that a thread
    // that polls every five seconds makes twelve passes in a minute.
    static void Advance(std::chrono::milliseconds span);
};

}  // namespace machine
