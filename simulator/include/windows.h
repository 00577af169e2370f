// The Win32 API as far as this system calls it.
//
// The compiler of resource scripts reads it too, with a C preprocessor, and takes the macros: the
// headers include nothing that is of C++ alone.
#pragma once

#include "windef.h"
#include "winerror.h"
#include "winbase.h"
#include "winreg.h"
#include "winnls.h"
#include "winver.h"
#include "wingdi.h"
#include "winuser.h"
