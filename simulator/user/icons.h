// Inspection of icons.
#pragma once

#include <windows.h>

#include <cstddef>

namespace user {

// The number of the icon's resource; 0 if there is no such icon.
UINT ImageOf(HICON icon);

// The icons that DestroyIcon has to free. Called under the lock.
std::size_t CountIconsLocked();

}  // namespace user
