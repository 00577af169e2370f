// Times as automation dates: days since 30 December 1899 in a double, whole seconds.
#pragma once

#include <windows.h>

#include <optional>

// Converts a UTC time to a UTC date; nothing if the time is invalid.
std::optional<double> ToAutomationDate(const SYSTEMTIME& time);
std::optional<double> ToAutomationDate(const FILETIME& time);
