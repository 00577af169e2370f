// The events of software updates: an offer, installed updates, failed downloads. Each handler reads
// its source again and shows a transient icon.
#include "controller/MainDlg.h"
#include "hlxRegistryKey.h"
#include "updates/NewerVersion.h"
#include "updates/SwCacheRecord.h"
#include "updates/UpdateResultStore.h"

namespace {

// Whether the key has a wanted record that is at most RESULT_WINDOW_TICKS old.
template <class Wanted>
bool HasRecentRecord(HKEY hive, LPCSTR keyPath, Wanted wanted) {
    const CHlxRegistryKey key(hive, keyPath);
    if (!key.IsOpen()) return false;
    FILETIME now;
    GetSystemTimeAsFileTime(&now);
    for (CRecordWalk walk(key); walk.NextBinaryRecord();) {
        const UpdateResultRecord& record = walk.Record();
        if (!wanted(record)) continue;
        if (!record.HasTime() || IsWithinResultWindow(now, record.m_time)) return true;
    }
    return false;
}

}  // namespace

// The contents of the buffer are not used: hlx_getSwCache reads the file. The controller posts
// null.
LRESULT CMainDlg::OnGotSWUpdates(char* buffer) {
    delete[] buffer;
    CSwCacheRecord update;
    if (update.Read() && IsNewerVersion(update.Version()) && !m_bAutoInstall && m_bHaveResult)
        ShowTransientIcon(m_nidUpdates,
                          {TRAY_ID_UPDATES, IDS_AVAILABLE_TIP, IDS_AVAILABLE_BALLOON});
    return 0;
}

// Every result counts, success or failure.
LRESULT CMainDlg::OnGotQueuedInstalls(HKEY hive, LPCSTR keyPath) {
    if (HasRecentRecord(hive, keyPath, [](const UpdateResultRecord&) { return true; }))
        ShowTransientIcon(m_nidInstalled,
                          {TRAY_ID_INSTALLED, IDS_INSTALLED_TIP, IDS_INSTALLED_BALLOON});
    return 0;
}

LRESULT CMainDlg::OnGotDownloadResults(HKEY hive, LPCSTR keyPath) {
    const auto failed = [](const UpdateResultRecord& record) { return record.IsFailure(); };
    if (HasRecentRecord(hive, keyPath, failed))
        ShowTransientIcon(m_nidDownloads, {TRAY_ID_DOWNLOADS, IDS_FAILED_TIP, IDS_FAILED_BALLOON});
    return 0;
}
