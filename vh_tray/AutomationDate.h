// Times as automation dates: days since 30 December 1899 in a double, whole seconds.
#pragma once

#include <windows.h>

#include <optional>

// A UTC time as a UTC date; nothing if it cannot be converted.
std::optional<double> ToAutomationDate(const SYSTEMTIME& time);
std::optional<double> ToAutomationDate(const FILETIME& time);
