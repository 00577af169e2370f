// The restarts that programs have requested. None of them is executed.
#pragma once

#include <vector>

#include "winbase.h"

namespace win32 {

struct Shutdown {
    UINT flags;
    DWORD reason;
};

// All requests so far, oldest first. Both are called under the state lock.
const std::vector<Shutdown>& RequestedShutdowns();
void ForgetShutdowns();

}  // namespace win32
