// Conversions between the forms of a date.
#pragma once

#include <optional>

#include "simulator/clock.h"
#include "winbase.h"

namespace win32 {

// Nothing if a field is out of its range. The day of the week is ignored.
std::optional<simulator::Ticks> TicksOf(const SYSTEMTIME& time);
// For dates from 1601 on.
SYSTEMTIME SystemTimeOf(simulator::Ticks date);

simulator::Ticks TicksOf(const FILETIME& time);
FILETIME FileTimeOf(simulator::Ticks date);
FILETIME FileTimeOf(const timespec& time);
timespec TimespecOf(simulator::Ticks date);

}  // namespace win32
