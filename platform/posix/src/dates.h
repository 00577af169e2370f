// Conversions between the forms of a date.
#pragma once

#include <optional>

#include "machine/clock.h"
#include "winbase.h"

namespace win32 {

// Nothing if a field is out of its range. The day of the week is not looked at.
std::optional<machine::Ticks> TicksOf(const SYSTEMTIME& time);
// For dates from 1601 on.
SYSTEMTIME SystemTimeOf(machine::Ticks date);

machine::Ticks TicksOf(const FILETIME& time);
FILETIME FileTimeOf(machine::Ticks date);
FILETIME FileTimeOf(const timespec& time);
timespec TimespecOf(machine::Ticks date);

}  // namespace win32
