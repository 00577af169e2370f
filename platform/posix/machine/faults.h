// Faults on order: makes the next calls of a named operation of the platform fail.
//
// Each operation of the subset asks Strike under its own name before it does anything else, so
// a test can refuse any of them without the caller knowing of tests.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace machine {

constexpr std::int64_t kAnyDetail = -1;
constexpr int kEveryCall = -1;

// Lets the next `count` calls of `operation` fail with `error` (kEveryCall: until cleared).
// `detail` narrows it to calls with that detail: the message of Shell_NotifyIconA, the control
// id of SetDlgItemTextA, the index of RegEnumValueA, the size of an allocation; each operation says
// which it gives.
void FailNext(std::string_view operation, int count, std::uint32_t error,
              std::int64_t detail = kAnyDetail);

void ClearFaults();

// Called by the operations: the error to fail with, if this call is to fail. Uses up one of the
// ordered faults. Costs one relaxed load when none is ordered.
std::optional<std::uint32_t> Strike(std::string_view operation, std::int64_t detail = kAnyDetail);

}  // namespace machine
