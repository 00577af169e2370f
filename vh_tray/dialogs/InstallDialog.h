// The dialog of installed updates. It offers a reboot if an installation requires it.
#pragma once

#include "dialogs/ResultsListView.h"
#include "dialogs/UpdateDialogImpl.h"

class CInstallDialog : public CUpdateDialogImpl<CInstallDialog> {
    friend class CUpdateDialogImpl<CInstallDialog>;

    static constexpr UpdateDialogTexts kTexts{IDS_INSTALLED_CAPTION, IDS_INSTALLED_INTRO,
                                              IDS_INSTALLED_LABEL, IDS_INSTALLED_COLUMNS};

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
