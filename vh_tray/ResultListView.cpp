#include "ResultListView.h"

#include <algorithm>
#include <memory>

#include "AutomationDate.h"
#include "ResultText.h"
#include "resource.h"

namespace {

constexpr int kSortKeyCapacity = 32;

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
    auto owned = std::make_unique<UpdateResultRecord>(record);
    if (SetItemData(row, reinterpret_cast<LPARAM>(owned.get()))) owned.release();
    for (int column = 1; text != texts.end(); ++column) SetCell(row, column, *text++);
    SetCell(row, m_columns.timeColumn, FormatResultTime(record, m_columns.timeCapacity));
    SetCell(row, m_columns.resultColumn, FormatResultReason(record));
    return true;
}

void CResultListView::ReleaseRow(LPARAM itemData) {
    delete reinterpret_cast<const UpdateResultRecord*>(itemData);
}

void CResultListView::SetSortColumn(int column, bool descending) {
    m_bSortDescending = descending;
    m_arrow.Show(GetHeader(), column, descending);
}

// A click on the arrow's column turns the order round, one on any other starts ascending.
void CResultListView::OnHeaderClick(const NMHEADERA& click) {
    if (click.iButton != 0) return;
    DoSortItems(click.iItem, click.iItem == m_arrow.Column() && !m_bSortDescending);
}

// What a row's item data points to while the list is being sorted.
struct CResultListView::SortEntry {
    const UpdateResultRecord* record;
    char key[kSortKeyCapacity];  // the start of the cell's text
};

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
    std::vector<SortEntry> entries(static_cast<std::size_t>(rows));
    for (int row = 0; row < rows; ++row) {
        SortEntry& entry = entries[static_cast<std::size_t>(row)];
        entry.record = GetRecord(row);
        // A control that cuts the text need not terminate it.
        GetItemText(row, column, entry.key, kSortKeyCapacity);
        entry.key[kSortKeyCapacity - 1] = '\0';
    }
    bool sorted = LendRowsTo(entries);
    if (sorted) {
        const SortOrder order{*this, column, descending};
        sorted = SortItems(CompareEntries, reinterpret_cast<LPARAM>(&order));
    }
    TakeRowsBack(entries);
    if (sorted) SetSortColumn(column, descending);
    return sorted;
}

// Puts each row's entry in the place of its record. False: the control has refused one, and no row
// is to be compared.
bool CResultListView::LendRowsTo(const std::vector<SortEntry>& entries) {
    for (std::size_t row = 0; row < entries.size(); ++row)
        if (!SetItemData(static_cast<int>(row), reinterpret_cast<LPARAM>(&entries[row])))
            return false;
    return true;
}

// Gives each row that has an entry its record back.
void CResultListView::TakeRowsBack(const std::vector<SortEntry>& entries) {
    const auto first = reinterpret_cast<LPARAM>(entries.data());
    const auto end = reinterpret_cast<LPARAM>(entries.data() + entries.size());
    for (int row = 0; row < static_cast<int>(entries.size()); ++row) {
        const LPARAM data = GetItemData(row);
        if (data < first || data >= end) continue;
        const auto* record = reinterpret_cast<const SortEntry*>(data)->record;
        SetItemData(row, reinterpret_cast<LPARAM>(record));
    }
}

SortKind CResultListView::KindOf(int column) const {
    const auto index = static_cast<std::size_t>(column);
    return index < m_arrColumnSortKind.size() ? m_arrColumnSortKind[index] : SortKind::None;
}

int CALLBACK CResultListView::CompareEntries(LPARAM a, LPARAM b, LPARAM order) {
    const auto& first = *reinterpret_cast<const SortEntry*>(a);
    const auto& second = *reinterpret_cast<const SortEntry*>(b);
    const auto& [list, column, descending] = *reinterpret_cast<const SortOrder*>(order);
    int result = 0;
    switch (list.KindOf(column)) {
        case SortKind::Text:
            result = lstrcmpA(first.key, second.key);
            break;
        case SortKind::TextNoCase:
            result = lstrcmpiA(first.key, second.key);
            break;
        case SortKind::Custom:
            if (first.record && second.record)
                result = list.CompareItemsCustom(*first.record, *second.record, column);
            break;
        case SortKind::None:
            break;
    }
    return descending ? -result : result;
}

int CResultListView::CompareItemsCustom(const UpdateResultRecord& a, const UpdateResultRecord& b,
                                        int column) const {
    // A time that is none stands before all others.
    if (column == m_columns.timeColumn)
        return Order(ToAutomationDate(a.m_time), ToAutomationDate(b.m_time));
    if (column == m_columns.resultColumn) return Order(a.m_dwResult, b.m_dwResult);
    return 0;
}
