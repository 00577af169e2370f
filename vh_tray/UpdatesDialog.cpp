#include "UpdatesDialog.h"

#include "NewerVersion.h"
#include "SwCacheRecord.h"

void CUpdateListViewCtl::SetupColumns() {
    SetExtendedListViewStyle(GetExtendedListViewStyle() | LVS_EX_FULLROWSELECT |
                             LVS_EX_DOUBLEBUFFER);
    CFittedListView::SetupColumns(IDS_AVAILABLE_COLUMNS);
}

// The file may have changed since the icon came up, so the version is judged again.
void CUpdatesDialog::FillList() {
    CSwCacheRecord update;
    if (!update.Read() || !IsNewerVersion(update.Version())) return;
    const int row = m_listUpdates.SetCell(0, 0, update.Name());
    if (row != -1) m_listUpdates.SetCell(row, 1, update.Version());
}
