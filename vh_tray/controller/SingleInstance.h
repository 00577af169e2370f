// One instance on each machine.
#pragma once

#include <windows.h>

// The named mutex, open from the test to the end of the process. Only its existence counts; no
// thread acquires it.
extern HANDLE g_hInstanceMutex;

// Creates the mutex. True: this process must end, since another instance runs or it cannot be
// determined.
bool IsAnotherInstanceRunning();
