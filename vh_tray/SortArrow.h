// The arrow in a list's header that shows which column is sorted, and which way.
#pragma once

#include <windows.h>

#include "frame/ListViewCtrl.h"

class CSortArrow {
public:
    CSortArrow();
    ~CSortArrow();
    CSortArrow(const CSortArrow&) = delete;
    CSortArrow& operator=(const CSortArrow&) = delete;

    // The column that bears the arrow; -1: none.
    int Column() const { return m_nSortColumn; }

    // Moves the arrow to the column; -1 takes it away.
    void Show(const CHeaderCtrl& header, int column, bool descending);

    // The arrow's column has been moved by one that was inserted at or before it.
    void OnColumnInserted(int column) {
        if (column <= m_nSortColumn) ++m_nSortColumn;
    }

    // The system's colours may have changed. True: the arrow was made anew and is to be shown
    // again.
    bool OnMetricsChanged();

private:
    void ShowByFlags(const CHeaderCtrl& header, int oldColumn, bool descending);
    void ShowByBitmap(const CHeaderCtrl& header, int oldColumn, bool descending);
    void MakeBitmaps();
    bool LoadShellBitmaps();
    void DeleteBitmaps();

    enum { kUp, kDown };

    bool m_bHeaderSortFlags;  // the header draws the arrow itself
    int m_nSortColumn = -1;
    // For a header that does not: the arrows, and what its item held before it got one.
    HBITMAP m_hSortBitmap[2] = {};
    int m_nSavedHeaderFormat = 0;
    HBITMAP m_hSavedHeaderBitmap = nullptr;
};
