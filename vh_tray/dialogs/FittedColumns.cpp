#include "dialogs/FittedColumns.h"

#include <algorithm>

#include "shared/StringTable.h"

namespace {
// In pixels. A column gets it twice: part of the interface, do not correct.
constexpr int kMargin = 15;
}  // namespace

void CFittedColumns::SetupColumns(UINT firstString) {
    std::string title;
    for (int column = 0; LoadText(firstString + static_cast<UINT>(column), title); ++column) {
        const int width = m_list.GetStringWidth(title.c_str());
        m_aColumnWidths.push_back(width);
        m_list.InsertColumn(column, title.c_str(), width + kMargin, column);
    }
}

int CFittedColumns::SetCell(int row, int column, const std::string& text) {
    if (column == 0)
        row = m_list.InsertItem(row, text.c_str());
    else if (!m_list.SetItemText(row, column, text.c_str()))
        row = -1;
    if (row == -1) return -1;
    if (const auto index = static_cast<std::size_t>(column); index < m_aColumnWidths.size())
        m_aColumnWidths[index] =
            std::max(m_aColumnWidths[index], m_list.GetStringWidth(text.c_str()) + kMargin);
    return row;
}

void CFittedColumns::FitColumns() {
    const CHeaderCtrl header = m_list.GetHeader();
    if (!header) return;
    const int columns = std::min(header.GetItemCount(), static_cast<int>(m_aColumnWidths.size()));
    for (int column = 0; column < columns; ++column)
        m_list.SetColumnWidth(column, m_aColumnWidths[static_cast<std::size_t>(column)] + kMargin);
}
