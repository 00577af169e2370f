// Shows health results, and requests new ones.
#include <memory>
#include <new>
#include <string>

#include "ExpatImpl.h"
#include "controller/MainDlg.h"
#include "controller/ModalCall.h"
#include "controller/RegisteredMessages.h"
#include "hlxCommand.h"
#include "hlxHealthReport.h"
#include "shared/StringTable.h"

namespace {

bool WantsIcon(const HealthReport& health) { return health.enabled && health.displayIcon; }

bool WantsMessage(const HealthReport& health) {
    return health.messagePopup && health.message && *health.message;
}

bool WantsPage(const HealthReport& health) { return health.urlPopup && health.url && *health.url; }

}  // namespace

LRESULT CMainDlg::OnHealthResults(char* buffer) {
    std::unique_ptr<char[]> text(buffer);
    // Any document ends a pending request.
    SetFlag(m_bReassessPending, 0);
    if (m_bStarting) return 0;

    HealthReport health;
    bool usable = false;
    {
        // The parser library stays loaded for this one document.
        const std::unique_ptr<CHlxExpatWrapper> library(new (std::nothrow) CHlxExpatWrapper);
        usable = health.Read(text.get()) == HLX_DONE;
    }
    text.reset();
    if (usable) ReactTo(health);
    return 0;
}

// The order is fixed: the icon shows the old state until the user has closed the box.
void CMainDlg::ReactTo(const HealthReport& health) {
    const bool isFirst = !m_bHaveResult;
    m_bAutoInstall = health.autoInstall != 0;
    m_bHaveResult = 1;
    // An update that was on offer before the first result has not been announced yet.
    if (isFirst && !m_bAutoInstall) PostMessageA(m_hWnd, g_msgSWUpdates.Number(), 0, 0);

    const LONG state = static_cast<LONG>(health.state);
    if (!WantsIcon(health)) {
        SetHealthIcon(HEALTH_UNKNOWN);
        return;
    }
    if (state == m_nHealthState) return;
    if (WantsMessage(health)) ShowHealthMessage(health);
    if (!m_hWnd) return;  // the applet was closed while the box was open
    if (WantsPage(health))
        ShellExecuteA(m_hWnd, "open", health.url, nullptr, nullptr, SW_SHOWNORMAL);
    SetHealthIcon(state);
}

// While one box is open, the boxes of other results are skipped, not postponed.
void CMainDlg::ShowHealthMessage(const HealthReport& health) {
    std::string caption;
    LoadText(IDS_HEALTH_TITLE, caption);
    const UINT kind = health.state == HEALTH_HIGH ? MB_ICONINFORMATION : MB_ICONEXCLAMATION;
    if (m_bMessageBoxOpen) return;
    SetFlag(m_bMessageBoxOpen, 1);
    const CModalCall call(m_hWnd);
    MessageBoxA(m_hWnd, health.message, caption.c_str(), MB_OK | MB_TOPMOST | kind);
    SetFlag(m_bMessageBoxOpen, 0);
}

// Sends one request at a time. The answer is a new notification file.
LRESULT CMainDlg::OnReassess() {
    if (m_bReassessPending) return 0;
    const bool sent = hlx_requestReassess() == 0;
    SetFlag(m_bReassessPending, sent);
    return 0;
}
