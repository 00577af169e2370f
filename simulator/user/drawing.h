// Inspection of drawn bitmaps.
#pragma once

#include <windows.h>

#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace user {

// The corners of the polygon drawn last in the bitmap; empty if there is none. Called under the
// lock.
std::vector<POINT> PolygonInLocked(HBITMAP bitmap);

// Bitmaps, pens and device contexts by kind. Called under the lock.
std::map<std::string, std::size_t> CountDrawingObjectsLocked();

}  // namespace user
