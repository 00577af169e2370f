// One applet a machine.
#pragma once

#include <windows.h>

// The named mutex, from the test to the end of the process. Only its existence counts; no thread
// acquires it.
extern HANDLE g_hInstanceMutex;

// True: this process must not go on, since another instance runs or since that cannot be told.
// Makes the mutex.
bool IsAnotherInstanceRunning();
