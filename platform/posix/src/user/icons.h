// What the desktop knows of an icon.
#pragma once

#include <windows.h>

namespace user {

// The number of the icon's resource; 0 if there is no such icon.
UINT ImageOf(HICON icon);

}  // namespace user
