// What the agent has installed, and the question whether to reboot where an installation needs it.
#pragma once

#include "ResultListView.h"
#include "UpdateDialogImpl.h"

class CInstallDialog : public CUpdateDialogImpl<CInstallDialog> {
    friend class CUpdateDialogImpl<CInstallDialog>;

    static constexpr UpdateDialogTexts kTexts{IDS_INSTALLED_CAPTION, IDS_INSTALLED_INTRO,
                                              IDS_INSTALLED_LABEL};

    auto& List() { return m_listResults; }
    void FillList();
    void OnListFilled();
    void SetUpButtons();
    void OnAnswer(WORD id);

    void AskForReboot();
    void LeaveOnlyOk();

    bool m_bRebootOffered = false;
    CInstallResultsListView m_listResults;
};
