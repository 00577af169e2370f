// A report list of update results. Each row owns a record as its item data. A click on a header
// sorts the rows by that column and shows an arrow there.
#pragma once

#include <windows.h>

#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "dialogs/FittedColumns.h"
#include "dialogs/SortArrow.h"
#include "frame/ListViewCtrl.h"
#include "frame/WindowImpl.h"
#include "updates/ResultText.h"
#include "updates/UpdateResultStore.h"

enum class SortKind : WORD {
    None = 0,
    Text = 1,
    TextNoCase = 2,
    Custom = 9,  // by the record of the row
};

// One row, as the comparison uses it. It exists during a sort only.
struct SortEntry {
    const UpdateResultRecord* record;
    std::optional<double> date;  // its time as an automation date, in a sort by time; none: no time
    // The start of the cell's text in the sorted column. Its length is part of the interface,
    // do not correct.
    char key[32];
};

// The difference between the lists of results.
struct ResultColumns {
    std::span<const SortKind> sortKinds;
    int timeColumn;    // shows the record's time
    int resultColumn;  // shows its result
    int timeCapacity;  // of a date or a time as text, in bytes with the terminator
};

// The rows, their records and their sort order.
class CSortListViewImpl : public CFittedColumns {
public:
    // One column for each string from `firstString` on, up to the first that is missing or empty.
    void SetupColumns(UINT firstString);

    // Inserts a row with the texts of its first columns, a copy of the record, and the cells that
    // show the record. False: the control could not insert the row.
    bool AddRow(int row, std::initializer_list<std::string> texts,
                const UpdateResultRecord& record);

    // For a row without a record. The row owns the record from then on. A record that cannot be
    // attached is destroyed.
    void SetItemData(int row, UpdateResultRecord* record);

    // The record of a row, which owns it; null if there is no such row.
    const UpdateResultRecord* GetRecord(int row) const;

    // Shows the arrow in this column, in the direction of m_bSortDescending; -1 removes it. Does
    // not sort.
    void SetSortColumn(int column);

    // Sorts the rows and shows the arrow. False: the control failed, or the column has no sort
    // kind; nothing has changed.
    bool DoSortItems(int column, bool descending);

    // Returns -1, 0 or 1 if `a` is less than, equal to or greater than `b` in a column that sorts
    // by records; 0 for any other column. Times compare in whole seconds, and an invalid time is
    // less than all others; results compare as unsigned numbers.
    int CompareItemsCustom(const SortEntry& a, const SortEntry& b, int column) const;

    // The user's short date and time without seconds, in local time. Empty if the time is invalid.
    std::string FormatResultTime(const UpdateResultRecord& record) const {
        return FormatLocalTime(record.m_time, m_columns.timeCapacity);
    }

    bool m_bSortDescending = false;

protected:
    // The list derives from this class and passes itself.
    CSortListViewImpl(const CListViewCtrlT<CWindow>& list, const ResultColumns& columns);

    // Reserves memory for the kind of one more column. Call it before the column is inserted, so
    // that no column is left without a kind if memory runs out.
    void ReserveColumn();
    void OnColumnInserted(int column);
    void OnHeaderNotification(const NMHEADERA& notification);
    void OnSettingChange(WPARAM setting);

    bool m_bHeaderSortFlags;  // the header draws the arrow itself
    int m_nSortColumn = -1;
    // For a header that does not: the arrows, and the former contents of its item.
    enum { kUp, kDown };
    OwnedBitmap m_hSortBitmap[2];
    int m_nSavedHeaderFormat = 0;
    HBITMAP m_hSavedHeaderBitmap = nullptr;
    enum : DWORD { kTryShellBitmaps = 1 };
    DWORD m_dwSortStyle = kTryShellBitmaps;
    std::vector<SortKind> m_arrColumnSortKind;

private:
    struct Order;
    static int CALLBACK CompareRows(LPARAM a, LPARAM b, LPARAM order);
    bool SortRows(int rows, int column, bool descending);
    SortKind KindOf(int column) const;
    void ShowArrowByFlags(int oldColumn);
    void ShowArrowByBitmap(int oldColumn);
    void MakeBitmaps();

    const ResultColumns& m_columns;
};

// T, the list itself, supplies its ResultColumns as T::kColumns.
template <class T, class TBase, class TWinTraits = CControlWinTraits>
class CSortListViewCtrlImpl : public CWindowImpl<T, TBase, TWinTraits>, public CSortListViewImpl {
public:
    using CSortListViewImpl::SetItemData;

    BOOL ProcessWindowMessage(HWND, UINT message, WPARAM wParam, LPARAM lParam,
                              LRESULT& result) override {
        switch (message) {
            case kReflected + WM_NOTIFY:
                delete reinterpret_cast<const UpdateResultRecord*>(DeletedItemData(lParam));
                return FALSE;
            case LVM_INSERTCOLUMNA:
                ReserveColumn();
                result = this->DefWindowProc(message, wParam, lParam);
                if (result != -1) OnColumnInserted(static_cast<int>(result));
                return TRUE;
            case WM_NOTIFY:
                OnHeaderNotification(*reinterpret_cast<const NMHEADERA*>(lParam));
                return FALSE;
            case WM_SETTINGCHANGE:
                OnSettingChange(wParam);
                return FALSE;
            default:
                return FALSE;
        }
    }

protected:
    CSortListViewCtrlImpl() : CSortListViewImpl(*this, T::kColumns) {}
};
