// Restarting the machine.
#pragma once

#include <windows.h>

// Whether an installation with this result requires a restart.
bool NeedsReboot(DWORD installResult);

// Enables the shutdown privilege until the process ends. False if the system refuses. For an
// account without the privilege this succeeds, and RebootNow fails.
bool EnableReboot();

// Reboots and closes all programs by force. Returns the result of the system.
BOOL RebootNow();
