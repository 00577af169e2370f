// The arrow in the header of a list that shows the sorted column and its direction.
#pragma once

#include <windows.h>

#include "frame/ListViewCtrl.h"
#include "hlxOwned.h"

using OwnedBitmap = HlxOwned<HBITMAP, DeleteObject>;

// Whether header controls draw the arrow themselves.
bool HeaderDrawsArrows();

// For such a header: HDF_SORTUP, HDF_SORTDOWN or, for no arrow, 0.
void SetArrowFlags(const CHeaderCtrl& header, int column, int flags);

// For any other header: the up arrow and the down arrow.
void DrawArrows(OwnedBitmap (&bitmaps)[2]);
// Loads the arrows of the shell. False: it does not have both.
bool LoadShellArrows(OwnedBitmap (&bitmaps)[2]);
