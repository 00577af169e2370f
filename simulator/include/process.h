// Threads of the C runtime.
#pragma once

#include <cstdint>

#include "windef.h"

// Starts a thread and returns its handle, which the caller closes, or 0. The security, stack and
// start flag arguments must be null or 0.
std::uintptr_t _beginthreadex(void* security, unsigned stack, unsigned (*procedure)(void*),
                              void* argument, unsigned flags, unsigned* threadId);
