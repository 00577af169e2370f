// What the process learns of the system it runs on.
#pragma once

#include "winbase.h"

namespace win32 {

// The version that GetVersionExA tells from now on; 6.1 at the start.
void SetWindowsVersion(DWORD major, DWORD minor);

}  // namespace win32
