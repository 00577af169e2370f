// What a health result means for the user, and the request for a new one.
#include <cstdint>
#include <memory>
#include <new>
#include <string>

#include "ExpatImpl.h"
#include "MainDlg.h"
#include "RegisteredMessages.h"
#include "StringTable.h"
#include "hlxCommand.h"
#include "hlxHealthResult.h"
#include "hlxMalloc.h"

// What one document says. Whatever it does not name stays zero.
struct CMainDlg::HealthResult {
    HealthResult() = default;
    HealthResult(const HealthResult&) = delete;
    HealthResult& operator=(const HealthResult&) = delete;

    // The reader's buffers, which it may have handed out even if it failed.
    ~HealthResult() {
        for (void* buffer : {static_cast<void*>(url), static_cast<void*>(message),
                             static_cast<void*>(rawSpan), static_cast<void*>(restrictions)})
            if (buffer) hlxfree(buffer);
    }

    bool Read(const char* text) {
        return hlx_parseHealthResult(text, &autoInstall, &enabled, &state, &displayIcon, &rawSpan,
                                     &message, &popUpMessage, &url, &openUrl, &restrictionCount,
                                     &restrictions) == 0;
    }

    bool WantsIcon() const { return enabled && displayIcon; }
    bool WantsMessage() const { return popUpMessage && message && *message; }
    bool WantsPage() const { return openUrl && url && *url; }

    std::uint32_t autoInstall = 0;
    std::uint32_t enabled = 0;
    std::uint32_t state = 0;
    std::uint32_t displayIcon = 0;
    char* rawSpan = nullptr;
    char* message = nullptr;
    std::uint32_t popUpMessage = 0;
    char* url = nullptr;
    std::uint32_t openUrl = 0;
    std::uint32_t restrictionCount = 0;
    std::uint32_t* restrictions = nullptr;
};

LRESULT CMainDlg::OnHealthResults(char* buffer) {
    std::unique_ptr<char[]> text(buffer);
    // Whatever has come, the request has been answered.
    SetFlag(m_bReassessPending, 0);
    if (m_bStarting) return 0;

    HealthResult health;
    bool usable = false;
    {
        // The parser library stays in memory for this one document.
        const std::unique_ptr<CHlxExpatWrapper> library(new (std::nothrow) CHlxExpatWrapper);
        usable = health.Read(text.get());
    }
    text.reset();
    if (usable) ReactTo(health);
    return 0;
}

// The order is fixed: the tray shows the old state until the user has closed the box.
void CMainDlg::ReactTo(const HealthResult& health) {
    const bool isFirst = !m_bHaveResult;
    m_bAutoInstall = health.autoInstall != 0;
    m_bHaveResult = 1;
    // Updates that were on offer before the first result have not been announced yet.
    if (isFirst && !m_bAutoInstall) PostMessageA(m_hWnd, g_msgSWUpdates.Number(), 0, 0);

    const LONG state = static_cast<LONG>(health.state);
    if (!health.WantsIcon()) {
        SetHealthIcon(HEALTH_UNKNOWN);
        return;
    }
    if (state == m_nHealthState) return;
    if (health.WantsMessage()) ShowHealthMessage(health);
    if (!m_hWnd) return;  // the applet was closed under the box
    if (health.WantsPage())
        ShellExecuteA(m_hWnd, "open", health.url, nullptr, nullptr, SW_SHOWNORMAL);
    SetHealthIcon(state);
}

// While one box is open, those of other results are skipped for good.
void CMainDlg::ShowHealthMessage(const HealthResult& health) {
    std::string caption;
    LoadText(IDS_HEALTH_TITLE, caption);
    const UINT kind = health.state == HEALTH_HIGH ? MB_ICONINFORMATION : MB_ICONEXCLAMATION;
    if (m_bMessageBoxOpen) return;
    SetFlag(m_bMessageBoxOpen, 1);
    MessageBoxA(m_hWnd, health.message, caption.c_str(), MB_OK | MB_TOPMOST | kind);
    SetFlag(m_bMessageBoxOpen, 0);
}

// One request at a time. The answer comes as a new notification file.
LRESULT CMainDlg::OnReassess() {
    if (m_bReassessPending) return 0;
    const bool sent = hlx_requestReassess() == 0;
    SetFlag(m_bReassessPending, sent);
    return 0;
}
