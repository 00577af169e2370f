// The restarts that programs have asked for. None of them is carried out.
#pragma once

#include <vector>

#include "winbase.h"

namespace win32 {

struct Shutdown {
    UINT flags;
    DWORD reason;
};

// All requests so far, oldest first. Both are called under the lock of the world.
const std::vector<Shutdown>& RequestedShutdowns();
void ForgetShutdowns();

}  // namespace win32
