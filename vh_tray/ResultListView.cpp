#include "ResultListView.h"

#include <algorithm>
#include <memory>

#include "AutomationDate.h"
#include "ResultText.h"
#include "resource.h"

namespace {

constexpr SortKind kInstallKinds[] = {SortKind::TextNoCase, SortKind::TextNoCase, SortKind::Custom,
                                      SortKind::Custom};
constexpr ResultColumns kInstallColumns{IDS_INSTALLED_COLUMNS, kInstallKinds, 2, 3, 256};

constexpr SortKind kDownloadKinds[] = {SortKind::TextNoCase, SortKind::Custom, SortKind::Custom};
constexpr ResultColumns kDownloadColumns{IDS_FAILED_COLUMNS, kDownloadKinds, 1, 2, 512};

template <class Value>
int Order(const Value& a, const Value& b) {
    return a < b ? -1 : a > b ? 1 : 0;
}

// The wait cursor, for as long as the object lives.
class CWaitCursor {
public:
    CWaitCursor() : m_old(SetCursor(LoadCursorA(nullptr, IDC_WAIT))) {}
    ~CWaitCursor() { SetCursor(m_old); }
    CWaitCursor(const CWaitCursor&) = delete;
    CWaitCursor& operator=(const CWaitCursor&) = delete;

private:
    HCURSOR m_old;
};

}  // namespace

CInstallResultsListView::CInstallResultsListView() : CResultListView(kInstallColumns) {}

CDownloadResultsListView::CDownloadResultsListView() : CResultListView(kDownloadColumns) {}

BOOL CResultListView::ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                           LRESULT& result) {
    switch (message) {
        case LVM_INSERTCOLUMNA:
            result = DefWindowProc(message, wParam, lParam);
            if (result != -1) OnColumnInserted(static_cast<int>(result));
            return TRUE;
        case WM_NOTIFY: {
            const auto& header = *reinterpret_cast<const NMHEADERA*>(lParam);
            const bool click = header.hdr.code == static_cast<UINT>(HDN_ITEMCLICKA) ||
                               header.hdr.code == static_cast<UINT>(HDN_ITEMCLICKW);
            if (click && header.hdr.hwndFrom == GetHeader().m_hWnd) OnHeaderClick(header);
            return FALSE;
        }
        case WM_SETTINGCHANGE:
            if (wParam == SPI_SETNONCLIENTMETRICS && m_arrow.OnMetricsChanged())
                SetSortColumn(m_arrow.Column(), m_bSortDescending);
            return FALSE;
        default:
            return CFittedListView::ProcessWindowMessage(window, message, wParam, lParam, result);
    }
}

void CResultListView::SetupColumns() {
    CFittedListView::SetupColumns(m_columns.firstTitle);
    const std::size_t known = std::min(m_columns.kinds.size(), m_arrColumnSortKind.size());
    std::copy_n(m_columns.kinds.begin(), known, m_arrColumnSortKind.begin());
}

void CResultListView::OnColumnInserted(int column) {
    m_arrColumnSortKind.insert(m_arrColumnSortKind.begin() + column, SortKind::Text);
    m_arrow.OnColumnInserted(column);
}

bool CResultListView::AddRow(int row, std::initializer_list<std::string> texts,
                             const UpdateResultRecord& record) {
    auto text = texts.begin();
    row = SetCell(row, 0, *text++);
    if (row == -1) return false;
    auto owned = std::make_unique<Row>(Row{record, {}});
    if (SetItemData(row, reinterpret_cast<LPARAM>(owned.get()))) owned.release();
    for (int column = 1; text != texts.end(); ++column) SetCell(row, column, *text++);
    SetCell(row, m_columns.timeColumn, FormatResultTime(record, m_columns.timeCapacity));
    SetCell(row, m_columns.resultColumn, FormatResultReason(record));
    return true;
}

void CResultListView::ReleaseRow(LPARAM itemData) { delete reinterpret_cast<const Row*>(itemData); }

void CResultListView::SetSortColumn(int column, bool descending) {
    m_bSortDescending = descending;
    m_arrow.Show(GetHeader(), column, descending);
}

// A click on the arrow's column turns the order round, one on any other starts ascending.
void CResultListView::OnHeaderClick(const NMHEADERA& click) {
    if (click.iButton != 0) return;
    DoSortItems(click.iItem, click.iItem == m_arrow.Column() && !m_bSortDescending);
}

struct CResultListView::SortOrder {
    const CResultListView& list;
    int column;
    bool descending;
};

bool CResultListView::DoSortItems(int column, bool descending) {
    if (KindOf(column) == SortKind::None) return false;
    const int rows = GetItemCount();
    if (rows < 2) {
        SetSortColumn(column, descending);
        return true;
    }
    const CWaitCursor wait;
    for (int index = 0; index < rows; ++index) {
        auto* const row = reinterpret_cast<Row*>(GetItemData(index));
        if (!row) continue;
        // A control that cuts the text need not terminate it.
        GetItemText(index, column, row->key, sizeof row->key);
        row->key[sizeof row->key - 1] = '\0';
    }
    const SortOrder order{*this, column, descending};
    const bool sorted = SortItems(CompareRows, reinterpret_cast<LPARAM>(&order));
    if (sorted) SetSortColumn(column, descending);
    return sorted;
}

SortKind CResultListView::KindOf(int column) const {
    const auto index = static_cast<std::size_t>(column);
    return index < m_arrColumnSortKind.size() ? m_arrColumnSortKind[index] : SortKind::None;
}

int CALLBACK CResultListView::CompareRows(LPARAM a, LPARAM b, LPARAM order) {
    const auto* first = reinterpret_cast<const Row*>(a);
    const auto* second = reinterpret_cast<const Row*>(b);
    const auto& [list, column, descending] = *reinterpret_cast<const SortOrder*>(order);
    // A row that could not be given its record stands before all others.
    const int result = first && second ? list.Compare(*first, *second, column)
                                       : Order(first != nullptr, second != nullptr);
    return descending ? -result : result;
}

int CResultListView::Compare(const Row& a, const Row& b, int column) const {
    switch (KindOf(column)) {
        case SortKind::Text:
            return lstrcmpA(a.key, b.key);
        case SortKind::TextNoCase:
            return lstrcmpiA(a.key, b.key);
        case SortKind::Custom:
            return CompareItemsCustom(a, b, column);
        case SortKind::None:
            break;
    }
    return 0;
}

int CResultListView::CompareItemsCustom(const UpdateResultRecord& a, const UpdateResultRecord& b,
                                        int column) const {
    // A time that is none stands before all others.
    if (column == m_columns.timeColumn)
        return Order(ToAutomationDate(a.m_time), ToAutomationDate(b.m_time));
    if (column == m_columns.resultColumn) return Order(a.m_dwResult, b.m_dwResult);
    return 0;
}
