#include "dialogs/UpdatesDialog.h"

#include "updates/NewerVersion.h"
#include "updates/SwCacheRecord.h"

CUpdateListViewCtl::~CUpdateListViewCtl() = default;

BOOL CUpdateListViewCtl::ProcessWindowMessage(HWND, UINT message, WPARAM, LPARAM lParam, LRESULT&) {
    if (message == kReflected + WM_NOTIFY)
        delete reinterpret_cast<const CRowObject*>(DeletedItemData(lParam));
    return FALSE;
}

void CUpdateListViewCtl::SetupColumns(UINT firstString) {
    SetExtendedListViewStyle(GetExtendedListViewStyle() | WinTraits::kExListStyle);
    CFittedColumns::SetupColumns(firstString);
}

// The file may have changed since the icon appeared, so the version is compared again.
void CUpdatesDialog::FillList() {
    CSwCacheRecord update;
    if (!update.Read() || !IsNewerVersion(update.Version())) return;
    const int row = m_listUpdates.SetCell(0, 0, update.Name());
    if (row != -1) m_listUpdates.SetCell(row, 1, update.Version());
}
