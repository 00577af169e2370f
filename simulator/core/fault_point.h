// The fault points of API calls.
//
// A call that can fail calls InjectedFault, or win32::MustFail, with its own name before it does
// anything else. The name is a template argument, so every call that a program links is known
// before main, and a fault for an unknown name is refused.
#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "simulator/faults.h"

namespace simulator {

// A string literal as a template argument.
template <std::size_t kSize>
struct Literal {
    consteval Literal(const char (&literal)[kSize]) { std::copy_n(literal, kSize, text); }
    char text[kSize];
};

// One call that can be made to fail.
class FaultPoint {
public:
    // `detail` describes the number that the call passes to InjectedFault; "" if it passes none.
    constexpr FaultPoint(const char* call, const char* detail) : call(call), detail(detail) {}

    // Adds the point to FaultableCalls(). Called before main.
    static bool Register(FaultPoint& point);

    std::optional<std::uint32_t> Take(std::int64_t value) {
        calls.fetch_add(1, std::memory_order_relaxed);
        if (injected.load(std::memory_order_relaxed) == 0) return std::nullopt;
        return TakeInjected(value);
    }

    const char* const call;
    const char* const detail;
    std::atomic<int> calls{0};
    FaultPoint* next = nullptr;  // in the list of all points

    static inline constinit std::atomic<int> injected{
        0};  // injected faults that have not taken effect yet

private:
    std::optional<std::uint32_t> TakeInjected(std::int64_t value) const;
};

template <Literal kCall, Literal kDetail>
struct FaultPointOf {
    static inline constinit FaultPoint point{kCall.text, kDetail.text};
    static inline const bool registered = FaultPoint::Register(point);
};

// The error with which the call has to fail, if a fault is injected into it. `value` is the number
// that kDetail describes.
template <Literal kCall, Literal kDetail = "">
std::optional<std::uint32_t> InjectedFault(std::int64_t value = kAnyDetail) {
    [[maybe_unused]] const bool* const registers = &FaultPointOf<kCall, kDetail>::registered;
    return FaultPointOf<kCall, kDetail>::point.Take(value);
}

}  // namespace simulator
