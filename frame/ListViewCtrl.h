// The report list view and its header, with one inline function for each message.
#pragma once

#include <windows.h>
#include <commctrl.h>

#include "frame/Window.h"

class CHeaderCtrl : public CWindow {
public:
    using CWindow::CWindow;

    int GetItemCount() const { return static_cast<int>(SendMessage(HDM_GETITEMCOUNT)); }
    bool GetItem(int column, HDITEMA* item) const {
        return SendMessage(HDM_GETITEMA, Index(column), reinterpret_cast<LPARAM>(item)) != 0;
    }
    bool SetItem(int column, const HDITEMA* item) const {
        return SendMessage(HDM_SETITEMA, Index(column), reinterpret_cast<LPARAM>(item)) != 0;
    }

private:
    static WPARAM Index(int column) { return static_cast<WPARAM>(column); }
};

// For a list with reflected notifications: the item data of the row that is being deleted. 0 if the
// row has none, and for any other notification.
inline LPARAM DeletedItemData(LPARAM lParam) {
    const auto& notification = *reinterpret_cast<const NMLISTVIEW*>(lParam);
    return notification.hdr.code == static_cast<UINT>(LVN_DELETEITEM) ? notification.lParam : 0;
}

template <class TBase>
class CListViewCtrlT : public TBase {
public:
    CHeaderCtrl GetHeader() const {
        return CHeaderCtrl(reinterpret_cast<HWND>(this->SendMessage(LVM_GETHEADER)));
    }
    int GetStringWidth(LPCSTR text) const {
        return static_cast<int>(
            this->SendMessage(LVM_GETSTRINGWIDTHA, 0, reinterpret_cast<LPARAM>(text)));
    }

    // Inserts a left-aligned column; returns its index or -1.
    int InsertColumn(int index, LPCSTR title, int width, int subItem) const {
        LVCOLUMNA column{};
        column.mask = LVCF_FMT | LVCF_WIDTH | LVCF_TEXT | LVCF_SUBITEM;
        column.fmt = LVCFMT_LEFT;
        column.cx = width;
        column.pszText = const_cast<LPSTR>(title);
        column.iSubItem = subItem;
        return static_cast<int>(
            this->SendMessage(LVM_INSERTCOLUMNA, Index(index), reinterpret_cast<LPARAM>(&column)));
    }
    // The control takes the low 16 bits of the width, in pixels.
    bool SetColumnWidth(int column, int width) const {
        return this->SendMessage(LVM_SETCOLUMNWIDTH, Index(column), MAKELPARAM(width, 0)) != 0;
    }

    int GetItemCount() const { return static_cast<int>(this->SendMessage(LVM_GETITEMCOUNT)); }
    // Returns the index of the new row or -1.
    int InsertItem(int row, LPCSTR text) const {
        const LVITEMA item = TextItem(row, 0, text);
        return static_cast<int>(
            this->SendMessage(LVM_INSERTITEMA, 0, reinterpret_cast<LPARAM>(&item)));
    }
    bool SetItemText(int row, int column, LPCSTR text) const {
        const LVITEMA item = TextItem(row, column, text);
        return this->SendMessage(LVM_SETITEMA, 0, reinterpret_cast<LPARAM>(&item)) != 0;
    }
    // At most `capacity` bytes with the terminator.
    void GetItemText(int row, int column, LPSTR text, int capacity) const {
        LVITEMA item = TextItem(row, column, text);
        item.cchTextMax = capacity;
        this->SendMessage(LVM_GETITEMTEXTA, Index(row), reinterpret_cast<LPARAM>(&item));
    }
    bool SetItemData(int row, LPARAM data) const {
        LVITEMA item{};
        item.mask = LVIF_PARAM;
        item.iItem = row;
        item.lParam = data;
        return this->SendMessage(LVM_SETITEMA, 0, reinterpret_cast<LPARAM>(&item)) != 0;
    }
    // 0 if the row does not exist or has none.
    LPARAM GetItemData(int row) const {
        LVITEMA item{};
        item.mask = LVIF_PARAM;
        item.iItem = row;
        this->SendMessage(LVM_GETITEMA, 0, reinterpret_cast<LPARAM>(&item));
        return item.lParam;
    }
    bool SetItemState(int row, UINT state, UINT mask) const {
        LVITEMA item{};
        item.state = state;
        item.stateMask = mask;
        return this->SendMessage(LVM_SETITEMSTATE, Index(row), reinterpret_cast<LPARAM>(&item)) !=
               0;
    }
    bool EnsureVisible(int row) const {
        return this->SendMessage(LVM_ENSUREVISIBLE, Index(row), FALSE) != 0;
    }
    bool DeleteAllItems() const { return this->SendMessage(LVM_DELETEALLITEMS) != 0; }
    bool SortItems(PFNLVCOMPARE compare, LPARAM context) const {
        return this->SendMessage(LVM_SORTITEMS, static_cast<WPARAM>(context),
                                 reinterpret_cast<LPARAM>(compare)) != 0;
    }

    DWORD GetExtendedListViewStyle() const {
        return static_cast<DWORD>(this->SendMessage(LVM_GETEXTENDEDLISTVIEWSTYLE));
    }
    void SetExtendedListViewStyle(DWORD style) const {
        this->SendMessage(LVM_SETEXTENDEDLISTVIEWSTYLE, 0, static_cast<LPARAM>(style));
    }

private:
    static WPARAM Index(int index) { return static_cast<WPARAM>(index); }

    static LVITEMA TextItem(int row, int column, LPCSTR text) {
        LVITEMA item{};
        item.mask = LVIF_TEXT;
        item.iItem = row;
        item.iSubItem = column;
        item.pszText = const_cast<LPSTR>(text);
        return item;
    }
};
