// How the operations of the subset report failure.
#pragma once

#include <string_view>

#include "machine/faults.h"
#include "winbase.h"
#include "winerror.h"

namespace win32 {

// True if a fault is ordered for this call; its number is then the thread's last error.
inline bool Refused(std::string_view operation, std::int64_t detail = machine::kAnyDetail) {
    const auto error = machine::Strike(operation, detail);
    if (error) SetLastError(*error);
    return error.has_value();
}

// Sets the thread's last error and gives the value that the failing call returns.
template <class Result>
Result Fail(DWORD error, Result result) {
    SetLastError(error);
    return result;
}

// The Windows number for a POSIX one, for files and folders.
DWORD ErrorOfErrno(int error);

// For a corner of the API that nobody here calls: says so on standard error and stops a debug
// build; any other goes on with ERROR_CALL_NOT_IMPLEMENTED as the thread's last error.
void NotImplemented(const char* what);

}  // namespace win32
