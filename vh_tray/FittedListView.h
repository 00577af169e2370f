// A report list that makes its columns from a run of strings and sizes them to what is written into
// them. Rows may own an object through their item data.
#pragma once

#include <string>
#include <vector>

#include "frame/ListViewCtrl.h"
#include "frame/WindowImpl.h"

class CFittedListView : public CWindowImpl<CListViewCtrlT<CWindow>> {
public:
    BOOL ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                              LRESULT& result) override;

    // One column for each string from `firstString` on, up to the first that is missing or empty.
    void SetupColumns(UINT firstString);

    // Column 0 inserts the row, the others write into it. Gives the row, or -1 if the control
    // refuses.
    int SetCell(int row, int column, const std::string& text);

    // Gives each column its final width. To be called when all cells are written.
    void FitColumns();

protected:
    // Called once for each row that is deleted with item data other than 0.
    virtual void ReleaseRow(LPARAM itemData) = 0;

private:
    // Widest text so far of each column, in pixels; a cell counts with its margin.
    std::vector<int> m_aColumnWidths;
};
