#include "FittedListView.h"

#include <algorithm>

#include "StringTable.h"

namespace {
constexpr int kMargin = 15;  // pixels
}

BOOL CFittedListView::ProcessWindowMessage(HWND, UINT message, WPARAM, LPARAM lParam,
                                           LRESULT& result) {
    if (message != kReflected + WM_NOTIFY) return FALSE;
    const auto& notification = *reinterpret_cast<const NMLISTVIEW*>(lParam);
    if (notification.hdr.code != static_cast<UINT>(LVN_DELETEITEM)) return FALSE;
    if (notification.lParam) ReleaseRow(notification.lParam);
    result = 0;
    return TRUE;
}

void CFittedListView::SetupColumns(UINT firstString) {
    std::string title;
    for (int column = 0; LoadText(firstString + static_cast<UINT>(column), title); ++column) {
        const int width = GetStringWidth(title.c_str());
        m_aColumnWidths.push_back(width);
        InsertColumn(column, title.c_str(), width + kMargin, column);
    }
}

int CFittedListView::SetCell(int row, int column, const std::string& text) {
    if (column == 0)
        row = InsertItem(row, text.c_str());
    else if (!SetItemText(row, column, text.c_str()))
        row = -1;
    if (row == -1) return -1;
    if (const auto index = static_cast<std::size_t>(column); index < m_aColumnWidths.size())
        m_aColumnWidths[index] =
            std::max(m_aColumnWidths[index], GetStringWidth(text.c_str()) + kMargin);
    return row;
}

void CFittedListView::FitColumns() {
    const CHeaderCtrl header = GetHeader();
    if (!header) return;
    const int columns = std::min(header.GetItemCount(), static_cast<int>(m_aColumnWidths.size()));
    for (int column = 0; column < columns; ++column)
        SetColumnWidth(column, m_aColumnWidths[static_cast<std::size_t>(column)] + kMargin);
}
