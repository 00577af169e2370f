// The update on offer, and the question whether to download it.
#pragma once

#include "FittedListView.h"
#include "UpdateDialogImpl.h"

// Name and version. Its rows own nothing.
class CUpdateListViewCtl : public CFittedListView {
public:
    void SetupColumns();

protected:
    void ReleaseRow(LPARAM) override {}
};

class CUpdatesDialog : public CUpdateDialogImpl<CUpdatesDialog> {
    friend class CUpdateDialogImpl<CUpdatesDialog>;

    static constexpr UpdateDialogTexts kTexts{IDS_AVAILABLE_CAPTION, IDS_AVAILABLE_INTRO,
                                              IDS_AVAILABLE_LABEL};

    auto& List() { return m_listUpdates; }
    void FillList();
    void OnAnswer(WORD id) { RequestDownloadIfConfirmed(id); }

    CUpdateListViewCtl m_listUpdates;
};
