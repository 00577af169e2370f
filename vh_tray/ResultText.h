// How a record of the update result store reads in a list's cell.
#pragma once

#include <string>

#include "UpdateResultStore.h"

// The user's short date and time without seconds, in local time, each of at most `capacity` bytes
// with its terminator. Empty for a time that is none.
std::string FormatResultTime(const UpdateResultRecord& record, int capacity);

// The system's text for the result, in one line; "Result code 0x..." where it has none.
std::string FormatResultReason(const UpdateResultRecord& record);
