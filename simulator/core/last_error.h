// How the calls of the API report failure.
#pragma once

#include <string>

#include "core/fault_point.h"
#include "winbase.h"
#include "winerror.h"

namespace win32 {

// True if a fault is injected into this call; its error is then the thread's last error. For the
// template arguments see InjectedFault.
template <simulator::Literal kCall, simulator::Literal kDetail = "">
bool MustFail(std::int64_t value = simulator::kAnyDetail) {
    const auto error = simulator::InjectedFault<kCall, kDetail>(value);
    if (error) SetLastError(*error);
    return error.has_value();
}

// Sets the thread's last error and returns the value that the failing call returns.
template <class Result>
Result Fail(DWORD error, Result result) {
    SetLastError(error);
    return result;
}

// The Windows number for a POSIX one, for files and folders.
DWORD ErrorOfErrno(int error);

// Ends the program with a message: it has called what the simulator does not implement.
[[noreturn]] void NotImplemented(const std::string& what);

}  // namespace win32
