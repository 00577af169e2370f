// Automation dates: days since 30 December 1899, whole seconds.
#pragma once

#include "windef.h"
#include "winbase.h"

using DATE = double;

// Gives FALSE on an impossible date.
INT WINAPI SystemTimeToVariantTime(LPSYSTEMTIME time, DATE* date);
