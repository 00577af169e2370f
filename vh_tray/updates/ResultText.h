// The texts of an update result in a list.
#pragma once

#include <string>

#include "updates/UpdateResultStore.h"

// Formats a UTC time as the user's short date and time without seconds, in local time; each has at
// most `capacity` bytes with its terminator. Empty if the time is invalid.
std::string FormatLocalTime(const FILETIME& time, int capacity);

// The system's text for the result, in one line; "Result code 0x..." if it has none.
std::string FormatResultReason(const UpdateResultRecord& record);
