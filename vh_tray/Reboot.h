// Restarting the machine.
#pragma once

#include <windows.h>

// Whether an installation with this result is complete only after a restart.
bool NeedsReboot(DWORD installResult);

// Gives the process the right to shut the machine down, for the rest of its life. False if the
// system refuses; an account that does not hold the right learns that only from RebootNow.
bool EnableReboot();

// Reboots, by force. The result is the system's.
BOOL RebootNow();
