// The files of the latest batch that could not be downloaded, and the offer to try again.
#pragma once

#include "ResultListView.h"
#include "UpdateDialogImpl.h"

class CDownloadDialog : public CUpdateDialogImpl<CDownloadDialog> {
    friend class CUpdateDialogImpl<CDownloadDialog>;

    static constexpr UpdateDialogTexts kTexts{IDS_FAILED_CAPTION, IDS_FAILED_INTRO,
                                              IDS_FAILED_LABEL};

    auto& List() { return m_listResults; }
    void FillList();
    void OnAnswer(WORD id) { RequestDownloadIfConfirmed(id); }

    CDownloadResultsListView m_listResults;
};
