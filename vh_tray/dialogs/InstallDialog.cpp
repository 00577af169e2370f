#include "dialogs/InstallDialog.h"

#include "hlxInterface.h"
#include "hlxRegistryKey.h"
#include "updates/InstalledProduct.h"
#include "updates/Reboot.h"

void CInstallDialog::FillList() {
    const CHlxRegistryKey key(HKEY_LOCAL_MACHINE, HLX_INSTALL_RESULTS_KEY);
    if (!key.IsOpen()) return;
    int rows = 0;
    for (CRecordWalk walk(key); walk.NextRecordOfAnyType();) {
        UpdateResultRecord record = walk.Record();
        record.FillInTime();
        const InstalledProduct product = FindInstalledProduct(walk.Name().c_str());
        if (product.name.empty()) continue;
        if (m_listResults.AddRow(rows, {product.name, product.version}, record)) ++rows;
    }
    m_listResults.m_bSortDescending = true;
    m_listResults.SetSortColumn(m_listResults.kColumns.timeColumn);
}

// Only the first row determines whether a reboot is offered.
void CInstallDialog::OnListFilled() {
    constexpr UINT kSelectedAndFocused = LVIS_SELECTED | LVIS_FOCUSED;
    if (m_listResults.SetItemState(0, kSelectedAndFocused, kSelectedAndFocused))
        m_listResults.EnsureVisible(0);
    const UpdateResultRecord* first = m_listResults.GetRecord(0);
    m_bRebootOffered = first && NeedsReboot(first->m_dwResult) && EnableReboot();
}

void CInstallDialog::SetUpButtons() {
    if (m_bRebootOffered)
        AskForReboot();
    else
        LeaveOnlyOk();
}

void CInstallDialog::AskForReboot() {
    std::string question;
    if (!LoadText(IDS_REBOOT_QUESTION, question)) return;
    m_strIntro += "\r\n\r\n" + question;
    PutTexts();
}

// The Yes button becomes a centred OK button; the No button is hidden.
void CInstallDialog::LeaveOnlyOk() {
    const CWindow no = GetDlgItem(IDNO);
    no.EnableWindow(FALSE);
    no.ShowWindow(SW_HIDE);

    const CWindow ok = GetDlgItem(IDYES);
    RECT dialog{}, button{};
    GetWindowRect(&dialog);
    ok.GetWindowRect(&button);
    const LONG width = button.right - button.left;
    button.left = dialog.left + (dialog.right - dialog.left - width) / 2;
    button.right = button.left + width;
    ScreenToClient(&button);
    ok.MoveWindow(button);

    std::string text;
    if (LoadText(IDS_OK, text)) ok.SetWindowText(text.c_str());
}

void CInstallDialog::OnAnswer(WORD id) {
    if (id == IDYES && m_bRebootOffered) RebootNow();
}
