// The one clock of the simulator.
//
// GetSystemTime, waits, timers, last-write times of the registry and the files of a simulated
// daemon use it. It is the real clock until SetManual is called; from then on it changes only by
// Advance.
#pragma once

#include <chrono>
#include <cstdint>

namespace simulator {

// 100-nanosecond ticks; as a date, since 1 January 1601 UTC.
using Ticks = std::int64_t;

constexpr Ticks kTicksPerMillisecond = 10'000;
constexpr Ticks kTicksPerSecond = 10'000'000;
constexpr Ticks kUnixEpoch = 116'444'736'000'000'000;  // 1 January 1970 as a date in ticks

class Clock {
public:
    // The date, UTC.
    static Ticks Now();

    // Monotonic ticks. Deadlines are given on this scale.
    static Ticks Uptime();

    // Makes the clock a manual one that shows `date`. Call it while no simulated thread runs.
    static void SetManual(Ticks date);

    // Returns to the real clock. Call it while no simulated thread runs.
    static void SetReal();

    static bool IsManual();

    // Moves a manual clock forward. It stops at each deadline of a waiting thread and goes on when
    // all simulated threads are idle again, so a thread that polls every five seconds makes twelve
    // passes in a minute.
    static void Advance(std::chrono::milliseconds span);
};

}  // namespace simulator
