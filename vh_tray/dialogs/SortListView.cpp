#include "dialogs/SortListView.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <type_traits>
#include <utility>

#include "shared/AutomationDate.h"

namespace {

template <class Value>
int CompareValues(const Value& a, const Value& b) {
    return (a > b) - (a < b);
}

// The wait cursor, for as long as the object exists.
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

CSortListViewImpl::CSortListViewImpl(const CListViewCtrlT<CWindow>& list,
                                     const ResultColumns& columns)
    : CFittedColumns(list), m_bHeaderSortFlags(HeaderDrawsArrows()), m_columns(columns) {}

void CSortListViewImpl::SetupColumns(UINT firstString) {
    CFittedColumns::SetupColumns(firstString);
    const std::size_t known = std::min(m_columns.sortKinds.size(), m_arrColumnSortKind.size());
    std::copy_n(m_columns.sortKinds.begin(), known, m_arrColumnSortKind.begin());
}

bool CSortListViewImpl::AddRow(int row, std::initializer_list<std::string> texts,
                               const UpdateResultRecord& record) {
    auto text = texts.begin();
    row = SetCell(row, 0, *text++);
    if (row == -1) return false;
    SetItemData(row, new UpdateResultRecord(record));
    for (int column = 1; text != texts.end(); ++column) SetCell(row, column, *text++);
    SetCell(row, m_columns.timeColumn, FormatResultTime(record));
    SetCell(row, m_columns.resultColumn, FormatResultReason(record));
    return true;
}

void CSortListViewImpl::SetItemData(int row, UpdateResultRecord* record) {
    if (!m_list.SetItemData(row, reinterpret_cast<LPARAM>(record))) delete record;
}

const UpdateResultRecord* CSortListViewImpl::GetRecord(int row) const {
    return reinterpret_cast<const UpdateResultRecord*>(m_list.GetItemData(row));
}

void CSortListViewImpl::ReserveColumn() {
    m_arrColumnSortKind.reserve(m_arrColumnSortKind.size() + 1);
}

void CSortListViewImpl::OnColumnInserted(int column) {
    const auto place = std::min(static_cast<std::size_t>(column), m_arrColumnSortKind.size());
    m_arrColumnSortKind.insert(m_arrColumnSortKind.begin() + static_cast<std::ptrdiff_t>(place),
                               SortKind::Text);
    if (column <= m_nSortColumn) ++m_nSortColumn;
}

// A click on the sorted column reverses the order; a click on any other column sorts ascending.
void CSortListViewImpl::OnHeaderNotification(const NMHEADERA& notification) {
    const bool click = notification.hdr.code == static_cast<UINT>(HDN_ITEMCLICKA) ||
                       notification.hdr.code == static_cast<UINT>(HDN_ITEMCLICKW);
    if (!click || notification.hdr.hwndFrom != m_list.GetHeader() || notification.iButton != 0)
        return;
    const int column = notification.iItem;
    DoSortItems(column, column == m_nSortColumn && !m_bSortDescending);
}

// The colours of the system may have changed with the metrics.
void CSortListViewImpl::OnSettingChange(WPARAM setting) {
    if (setting != SPI_SETNONCLIENTMETRICS || m_bHeaderSortFlags || !m_hSortBitmap[kUp]) return;
    MakeBitmaps();
    if (m_nSortColumn != -1) SetSortColumn(m_nSortColumn);
}

bool CSortListViewImpl::DoSortItems(int column, bool descending) {
    if (KindOf(column) == SortKind::None) return false;
    const int rows = m_list.GetItemCount();
    if (rows >= 2 && !SortRows(rows, column, descending)) return false;
    m_bSortDescending = descending;
    SetSortColumn(column);
    return true;
}

// One sort. Its entries are in the order of the addresses of their records, so that a comparison
// finds them by the item data of its rows.
struct CSortListViewImpl::Order {
    const CSortListViewImpl& list;
    int column;
    bool descending;
    std::unique_ptr<SortEntry[]> entries;
    std::size_t count;

    // Each argument points to the address of a record; an entry begins with one.
    static int CompareAddresses(const void* a, const void* b) {
        const auto address = [](const void* pointer) {
            return reinterpret_cast<std::uintptr_t>(
                *static_cast<const UpdateResultRecord* const*>(pointer));
        };
        return CompareValues(address(a), address(b));
    }
    static_assert(std::is_standard_layout_v<SortEntry> && std::is_trivially_copyable_v<SortEntry>);

    // Null for a row without a record.
    const SortEntry* EntryOf(LPARAM itemData) const {
        const auto* record = reinterpret_cast<const UpdateResultRecord*>(itemData);
        return static_cast<const SortEntry*>(
            std::bsearch(&record, entries.get(), count, sizeof(SortEntry), CompareAddresses));
    }

    int Compare(const SortEntry& a, const SortEntry& b) const {
        switch (list.KindOf(column)) {
            case SortKind::Text:
                return lstrcmpA(a.key, b.key);
            case SortKind::TextNoCase:
                return lstrcmpiA(a.key, b.key);
            case SortKind::Custom:
                return list.CompareItemsCustom(a, b, column);
            case SortKind::None:
                break;
        }
        return 0;
    }
};

bool CSortListViewImpl::SortRows(int rows, int column, bool descending) {
    const CWaitCursor wait;
    Order order{*this, column, descending,
                std::make_unique<SortEntry[]>(static_cast<std::size_t>(rows)), 0};
    for (int row = 0; row < rows; ++row) {
        const UpdateResultRecord* record = GetRecord(row);
        if (!record) continue;
        SortEntry& entry = order.entries[order.count++];
        entry.record = record;
        if (column == m_columns.timeColumn) entry.date = ToAutomationDate(record->m_time);
        // The control does not always terminate a text that it truncates.
        m_list.GetItemText(row, column, entry.key, sizeof entry.key);
        entry.key[sizeof entry.key - 1] = '\0';
    }
    std::qsort(order.entries.get(), order.count, sizeof(SortEntry), Order::CompareAddresses);
    return m_list.SortItems(CompareRows, reinterpret_cast<LPARAM>(&order));
}

int CALLBACK CSortListViewImpl::CompareRows(LPARAM a, LPARAM b, LPARAM order) {
    const auto& sort = *reinterpret_cast<const Order*>(order);
    const SortEntry* first = sort.EntryOf(a);
    const SortEntry* second = sort.EntryOf(b);
    // A row without a record is less than all others.
    const int result = first && second ? sort.Compare(*first, *second)
                                       : CompareValues(first != nullptr, second != nullptr);
    return sort.descending ? -result : result;
}

int CSortListViewImpl::CompareItemsCustom(const SortEntry& a, const SortEntry& b,
                                          int column) const {
    if (column == m_columns.timeColumn) return CompareValues(a.date, b.date);
    if (column == m_columns.resultColumn)
        return CompareValues(a.record->m_dwResult, b.record->m_dwResult);
    return 0;
}

SortKind CSortListViewImpl::KindOf(int column) const {
    const auto index = static_cast<std::size_t>(column);
    return index < m_arrColumnSortKind.size() ? m_arrColumnSortKind[index] : SortKind::None;
}

void CSortListViewImpl::SetSortColumn(int column) {
    const int oldColumn = std::exchange(m_nSortColumn, column);
    if (m_bHeaderSortFlags)
        ShowArrowByFlags(oldColumn);
    else
        ShowArrowByBitmap(oldColumn);
}

void CSortListViewImpl::ShowArrowByFlags(int oldColumn) {
    const CHeaderCtrl header = m_list.GetHeader();
    if (oldColumn != m_nSortColumn && oldColumn != -1) SetArrowFlags(header, oldColumn, 0);
    if (m_nSortColumn >= 0)
        SetArrowFlags(header, m_nSortColumn, m_bSortDescending ? HDF_SORTDOWN : HDF_SORTUP);
}

void CSortListViewImpl::ShowArrowByBitmap(int oldColumn) {
    const CHeaderCtrl header = m_list.GetHeader();
    if (!m_hSortBitmap[kUp]) MakeBitmaps();
    const bool moved = oldColumn != m_nSortColumn;
    HDITEMA item{};
    item.mask = HDI_FORMAT | HDI_BITMAP;
    if (moved && oldColumn != -1) {
        item.fmt = m_nSavedHeaderFormat;
        item.hbm = m_hSavedHeaderBitmap;
        header.SetItem(oldColumn, &item);
    }
    if (m_nSortColumn < 0 || !header.GetItem(m_nSortColumn, &item)) return;
    if (moved) {
        m_nSavedHeaderFormat = item.fmt;
        m_hSavedHeaderBitmap = item.hbm;
    }
    item.fmt = (item.fmt & ~HDF_IMAGE) | HDF_BITMAP | HDF_BITMAP_ON_RIGHT;
    item.hbm = m_hSortBitmap[m_bSortDescending ? kDown : kUp].get();
    header.SetItem(m_nSortColumn, &item);
}

void CSortListViewImpl::MakeBitmaps() {
    if (m_dwSortStyle & kTryShellBitmaps && LoadShellArrows(m_hSortBitmap)) return;
    DrawArrows(m_hSortBitmap);
}
