// The dialog of failed downloads: the failures of the latest batch; Yes requests another download.
#pragma once

#include "dialogs/ResultsListView.h"
#include "dialogs/UpdateDialogImpl.h"

class CDownloadDialog : public CUpdateDialogImpl<CDownloadDialog> {
    friend class CUpdateDialogImpl<CDownloadDialog>;

    static constexpr UpdateDialogTexts kTexts{IDS_FAILED_CAPTION, IDS_FAILED_INTRO,
                                              IDS_FAILED_LABEL, IDS_FAILED_COLUMNS};

    auto& List() { return m_listResults; }
    void FillList();
    void OnAnswer(WORD id) { RequestDownloadIfConfirmed(id); }

    CDownloadResultsListView m_listResults;
};
