// The Win32 API as far as this system calls it.
#pragma once

#include "windef.h"
#include "winerror.h"
#include "winbase.h"
#include "winreg.h"
#include "winnls.h"
#include "winver.h"
#include "wingdi.h"
#include "winuser.h"
