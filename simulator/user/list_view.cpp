// The list view, in its report view: columns, rows of texts, the selection, sorting.
#include "user/list_view.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "core/last_error.h"
#include "user/copy_cut.h"

namespace user {

const std::string& Row::Cell(int column) const {
    static const std::string empty;
    const auto at = static_cast<std::size_t>(column);
    return at < cells.size() ? cells[at] : empty;
}

namespace {

// One message to one list view.
class ListView {
public:
    ListView(const Window& window, ListViewState& state) : m_window(window), m_state(state) {}

    LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam);

private:
    int Columns() const { return static_cast<int>(ToHeader(HDM_GETITEMCOUNT)); }
    LRESULT ToHeader(UINT message, WPARAM wParam = 0, HDITEMA* item = nullptr) const {
        return SendMessageA(m_state.header, message, wParam, reinterpret_cast<LPARAM>(item));
    }
    Row* RowAt(WPARAM index) const {
        return index < m_state.rows.size() ? m_state.rows[index].get() : nullptr;
    }

    LRESULT InsertColumn(WPARAM index, const LVCOLUMNA& column);
    LRESULT SetColumnWidth(WPARAM index, int width);
    LRESULT InsertRow(const LVITEMA& item);
    bool SetItem(const LVITEMA& item);
    bool GetItem(LVITEMA& item) const;
    bool SetCell(Row& row, int column, LPCSTR text);
    bool SetState(WPARAM index, UINT state, UINT mask);
    bool DeleteRow(WPARAM index);
    void DeleteAll();
    bool Sort(PFNLVCOMPARE compare, LPARAM context);
    LRESULT Notify(UINT code, int row, LPARAM parameter) const;

    const Window& m_window;
    ListViewState& m_state;
};

LRESULT ListView::Notify(UINT code, int row, LPARAM parameter) const {
    NMLISTVIEW notice{};
    notice.hdr = {m_window.handle, static_cast<UINT_PTR>(m_window.id), code};
    notice.iItem = row;
    notice.lParam = parameter;
    return SendMessageA(m_window.parent, WM_NOTIFY, notice.hdr.idFrom,
                        reinterpret_cast<LPARAM>(&notice));
}

LRESULT ListView::InsertColumn(WPARAM index, const LVCOLUMNA& column) {
    if (win32::MustFail<"LVM_INSERTCOLUMNA">()) return -1;
    HDITEMA item{};
    item.mask = HDI_WIDTH | HDI_TEXT | HDI_FORMAT;
    item.cxy = column.mask & LVCF_WIDTH ? column.cx : 0;
    item.pszText = column.mask & LVCF_TEXT ? column.pszText : nullptr;
    item.fmt = HDF_STRING | (column.mask & LVCF_FMT ? column.fmt : HDF_LEFT);
    return ToHeader(HDM_INSERTITEMA, index, &item);
}

LRESULT ListView::InsertRow(const LVITEMA& item) {
    if (win32::MustFail<"LVM_INSERTITEMA">() || item.iItem < 0 || item.iSubItem != 0) return -1;
    const std::size_t at = std::min(static_cast<std::size_t>(item.iItem), m_state.rows.size());
    m_state.rows.insert(m_state.rows.begin() + static_cast<std::ptrdiff_t>(at),
                        std::make_unique<Row>());
    LVITEMA placed = item;
    placed.iItem = static_cast<int>(at);
    SetItem(placed);
    return placed.iItem;
}

bool ListView::SetCell(Row& row, int column, LPCSTR text) {
    if (column < 0 || column >= std::max(Columns(), 1)) return false;
    const auto at = static_cast<std::size_t>(column);
    if (at >= row.cells.size()) row.cells.resize(at + 1);
    row.cells[at] = text ? text : "";
    return true;
}

bool ListView::SetItem(const LVITEMA& item) {
    Row* row = RowAt(static_cast<WPARAM>(item.iItem));
    if (!row) return false;
    if (item.mask & LVIF_TEXT && !SetCell(*row, item.iSubItem, item.pszText)) return false;
    if (item.mask & LVIF_PARAM) row->parameter = item.lParam;
    if (item.mask & LVIF_STATE)
        SetState(static_cast<WPARAM>(item.iItem), item.state, item.stateMask);
    return true;
}

bool ListView::GetItem(LVITEMA& item) const {
    const Row* row = RowAt(static_cast<WPARAM>(item.iItem));
    if (!row) return false;
    if (item.mask & LVIF_TEXT) CopyCut(row->Cell(item.iSubItem), item.pszText, item.cchTextMax);
    if (item.mask & LVIF_PARAM) item.lParam = row->parameter;
    if (item.mask & LVIF_STATE) item.state = row->state & item.stateMask;
    return true;
}

// One row at most has the focus, and, in a list of single selection, is selected. Index -1 means
// all rows.
bool ListView::SetState(WPARAM index, UINT state, UINT mask) {
    const bool all = index == static_cast<WPARAM>(-1);
    Row* row = RowAt(index);
    if (!row && !all) return false;
    UINT alone = state & mask & LVIS_FOCUSED;
    if (m_window.Has(LVS_SINGLESEL)) alone |= state & mask & LVIS_SELECTED;
    for (const auto& other : m_state.rows) {
        other->state &= ~alone;
        if (all) other->state = (other->state & ~mask) | (state & mask);
    }
    if (row) row->state = (row->state & ~mask) | (state & mask);
    return true;
}

// The parent is notified while the row still exists.
bool ListView::DeleteRow(WPARAM index) {
    if (!RowAt(index)) return false;
    Notify(LVN_DELETEITEM, static_cast<int>(index), m_state.rows[index]->parameter);
    if (RowAt(index)) m_state.rows.erase(m_state.rows.begin() + static_cast<std::ptrdiff_t>(index));
    return true;
}

// A parent that answers LVN_DELETEALLITEMS with true is not notified of each row.
void ListView::DeleteAll() {
    if (!Notify(LVN_DELETEALLITEMS, -1, 0)) {
        while (!m_state.rows.empty()) DeleteRow(m_state.rows.size() - 1);
    }
    m_state.rows.clear();
}

bool ListView::Sort(PFNLVCOMPARE compare, LPARAM context) {
    if (win32::MustFail<"LVM_SORTITEMS">() || !compare) return false;
    std::stable_sort(m_state.rows.begin(), m_state.rows.end(),
                     [=](const auto& left, const auto& right) {
                         return compare(left->parameter, right->parameter, context) < 0;
                     });
    return true;
}

LRESULT ListView::SetColumnWidth(WPARAM index, int width) {
    HDITEMA item{};
    item.mask = HDI_WIDTH;
    item.cxy = width;
    return ToHeader(HDM_SETITEMA, index, &item);
}

LRESULT ListView::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
    auto* item = reinterpret_cast<LVITEMA*>(lParam);
    switch (message) {
        case LVM_GETITEMCOUNT:
            return static_cast<LRESULT>(m_state.rows.size());
        case LVM_INSERTITEMA:
            return InsertRow(*item);
        case LVM_SETITEMA:
            return !win32::MustFail<"LVM_SETITEMA", "index of the column">(item->iSubItem) &&
                   SetItem(*item);
        case LVM_GETITEMA:
            return GetItem(*item);
        case LVM_GETITEMTEXTA: {
            const Row* row = RowAt(wParam);
            return row ? CopyCut(row->Cell(item->iSubItem), item->pszText, item->cchTextMax) : 0;
        }
        case LVM_SETITEMSTATE:
            return SetState(wParam, item->state, item->stateMask);
        case LVM_DELETEALLITEMS:
        case WM_DESTROY:
            DeleteAll();
            return TRUE;
        case LVM_SORTITEMS:
            return Sort(reinterpret_cast<PFNLVCOMPARE>(lParam), static_cast<LPARAM>(wParam));
        case LVM_ENSUREVISIBLE:
            return RowAt(wParam) != nullptr;
        case LVM_GETSTRINGWIDTHA:
            return kCharacterWidth *
                   static_cast<LRESULT>(std::strlen(reinterpret_cast<LPCSTR>(lParam)));
        case LVM_GETHEADER:
            return reinterpret_cast<LRESULT>(m_state.header);
        case LVM_GETEXTENDEDLISTVIEWSTYLE:
            return m_state.extendedStyle;
        case LVM_SETEXTENDEDLISTVIEWSTYLE: {
            const DWORD mask = wParam ? static_cast<DWORD>(wParam) : ~DWORD{0};
            const DWORD before = m_state.extendedStyle;
            m_state.extendedStyle = (before & ~mask) | (static_cast<DWORD>(lParam) & mask);
            return before;
        }
        case LVM_SETCOLUMNWIDTH:
            return SetColumnWidth(wParam, static_cast<std::int16_t>(LOWORD(lParam)));
        case LVM_INSERTCOLUMNA:
            return InsertColumn(wParam, *reinterpret_cast<const LVCOLUMNA*>(lParam));
    }
    if (message >= LVM_FIRST && message < HDM_FIRST)
        win32::NotImplemented("list view message " + std::to_string(message - LVM_FIRST));
    return DefWindowProcA(m_window.handle, message, wParam, lParam);
}

LRESULT CALLBACK ListViewProc(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
    const WindowPtr window = Lookup(handle);
    auto* state = StateOf<ListViewState>(window);
    return state ? ListView(*window, *state).Handle(message, wParam, lParam) : 0;
}

}  // namespace

const WindowClass kListViewClass = {
    WC_LISTVIEWA, 0, ListViewProc, [](Window& window) {
        auto state = std::make_unique<ListViewState>();
        constexpr int kHeight = 20;
        const RECT place{0, 0, window.place.right - window.place.left, kHeight};
        state->header = Create({&kHeaderClass, "", WS_CHILD | WS_VISIBLE, 0, place, window.handle,
                                0, window.instance})
                            ->handle;
        window.state = std::move(state);
    }};

}  // namespace user
