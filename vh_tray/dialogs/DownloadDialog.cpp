#include "dialogs/DownloadDialog.h"

#include "hlxInterface.h"
#include "hlxRegistryKey.h"

namespace {

FILETIME LastWriteTime(HKEY key) {
    FILETIME time{};
    // Without a last-write time the batch is measured from now.
    if (RegQueryInfoKeyA(key, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                         nullptr, nullptr, nullptr, &time) != ERROR_SUCCESS)
        GetSystemTimeAsFileTime(&time);
    return time;
}

}  // namespace

// The latest batch is what was recorded within the window before the key's last change, however
// long ago that was.
void CDownloadDialog::FillList() {
    const CHlxRegistryKey key(HKEY_LOCAL_MACHINE, HLX_DOWNLOAD_RESULTS_KEY);
    if (!key.IsOpen()) return;
    const FILETIME lastWrite = LastWriteTime(key);
    int rows = 0;
    for (CRecordWalk walk(key); walk.NextBinaryRecord();) {
        UpdateResultRecord record = walk.Record();
        if (!record.IsFailure()) continue;
        if (record.HasTime() && !IsWithinResultWindow(lastWrite, record.m_time)) continue;
        record.FillInTime();
        if (m_listResults.AddRow(rows, {walk.Name()}, record)) ++rows;
    }
    m_listResults.m_bSortDescending = true;
    m_listResults.SetSortColumn(m_listResults.kColumns.timeColumn);
}
