// Fault injection: makes the next calls of a named API call fail.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace simulator {

constexpr std::int64_t kAnyDetail = -1;
constexpr int kEveryCall = -1;

// Makes `count` calls of `call` fail with `error` (kEveryCall: until ClearFaults), after the next
// `skip` ones have passed. `detail` restricts count and skip to the calls with that detail, such as
// the message of Shell_NotifyIconA; FaultableCalls() names the detail of each call. Throws
// std::invalid_argument if no call of the program has that name, or if it has no detail and one is
// given. Several faults for one call are used up in the order in which they were injected.
void FailNext(std::string_view call, int count, std::uint32_t error,
              std::int64_t detail = kAnyDetail, int skip = 0);

// Runs `action` once when `call` is made next, on the calling thread and before the call does
// anything; then the call goes on, unless the action throws. `detail` and `skip` as above.
void BeforeNext(std::string_view call, std::function<void()> action,
                std::int64_t detail = kAnyDetail, int skip = 0);

// Removes all faults and actions. Returns the names of the calls whose faults or actions were not
// used up (of kEveryCall: never used), separated by spaces: "" when every fault has taken effect.
[[nodiscard]] std::string ClearFaults();

struct FaultableCall {
    std::string name;
    std::string detail;  // which number FailNext compares with its detail; "" for none
    int calls;           // since the process began or ResetCallCounts was called
};

// All calls of the program that can be made to fail, sorted by name.
std::vector<FaultableCall> FaultableCalls();
void ResetCallCounts();

}  // namespace simulator
