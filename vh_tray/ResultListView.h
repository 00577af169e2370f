// The lists of installed updates and of failed downloads: one row for each record of the update
// result store, sorted by a click on a header.
#pragma once

#include <initializer_list>
#include <span>
#include <string>
#include <vector>

#include "FittedListView.h"
#include "SortArrow.h"
#include "UpdateResultStore.h"

enum class SortKind : WORD {
    None = 0,
    Text = 1,
    TextNoCase = 2,
    Custom = 9,  // by what the row's record holds
};

// What the two lists differ in.
struct ResultColumns {
    UINT firstTitle;  // string of the first column; those of the others follow
    std::span<const SortKind> kinds;
    int timeColumn;
    int resultColumn;
    int timeCapacity;  // longest date or time text, in bytes with its terminator
};

class CResultListView : public CFittedListView {
public:
    explicit CResultListView(const ResultColumns& columns) : m_columns(columns) {}

    BOOL ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                              LRESULT& result) override;

    void SetupColumns();

    // Inserts a row with the texts of its first columns, and with its own copy of the record and
    // the cells that tell it. False: the control has refused the row.
    bool AddRow(int row, std::initializer_list<std::string> texts,
                const UpdateResultRecord& record);

    // The record of a row, which owns it; null if there is no such row.
    const UpdateResultRecord* GetRecord(int row) const {
        return reinterpret_cast<const Row*>(GetItemData(row));
    }

    // Marks the column with an arrow; sorts nothing.
    void SetSortColumn(int column, bool descending);

    // Sorts the rows and marks the column. False: the control has refused, and all is as it was.
    bool DoSortItems(int column, bool descending);

    // -1, 0 or 1 as `a` stands before, beside or behind `b` in the ascending order of a column that
    // sorts by records; 0 for any other column.
    int CompareItemsCustom(const UpdateResultRecord& a, const UpdateResultRecord& b,
                           int column) const;

protected:
    void ReleaseRow(LPARAM itemData) override;

private:
    // What a row's item data points to.
    struct Row : UpdateResultRecord {
        char key[32];  // the start of the cell's text in the column that is being sorted
    };
    struct SortOrder;
    static int CALLBACK CompareRows(LPARAM a, LPARAM b, LPARAM order);
    int Compare(const Row& a, const Row& b, int column) const;

    void OnColumnInserted(int column);
    void OnHeaderClick(const NMHEADERA& click);
    SortKind KindOf(int column) const;

    const ResultColumns& m_columns;
    bool m_bSortDescending = false;
    CSortArrow m_arrow;
    std::vector<SortKind> m_arrColumnSortKind;
};

// Name, version, time, result.
class CInstallResultsListView : public CResultListView {
public:
    CInstallResultsListView();
};

// File name, time, reason.
class CDownloadResultsListView : public CResultListView {
public:
    CDownloadResultsListView();
};
