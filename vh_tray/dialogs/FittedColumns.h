// The columns of a report list: created from consecutive strings, and as wide as their contents.
#pragma once

#include <string>
#include <vector>

#include "frame/ListViewCtrl.h"

class CFittedColumns {
public:
    virtual ~CFittedColumns() = default;
    CFittedColumns(const CFittedColumns&) = delete;
    CFittedColumns& operator=(const CFittedColumns&) = delete;

    // Creates one column for each string from `firstString` on, up to the first one that is missing
    // or empty.
    void SetupColumns(UINT firstString);

    // Column 0 inserts the row; the other columns set its texts. Returns the row, or -1 if the
    // control fails.
    int SetCell(int row, int column, const std::string& text);

    // Sets the final width of each column. Call it after all cells are written.
    void FitColumns();

protected:
    // The list derives from this class and passes itself.
    explicit CFittedColumns(const CListViewCtrlT<CWindow>& list) : m_list(list) {}

    const CListViewCtrlT<CWindow>& m_list;

private:
    // The widest text of each column so far, in pixels; a cell with its margin.
    std::vector<int> m_aColumnWidths;
};
