// The controller: a dialog that is never shown. Its window receives all events of the applet: the
// callbacks of the tray icons, the messages of the watcher threads, the start timer and the
// commands of the menu.
//
// Everything runs on the thread of the message loop. Handlers nest: message boxes, modal dialogs,
// the menu and the sheet of the Control Panel applet run message loops of their own, which deliver
// to the same dispatch. The flags prevent a second box or sheet; the lock cannot.
//
// The handlers are in files by subject: MainDlg.cpp (dispatch and lifetime), MainDlgTray.cpp,
// MainDlgHealth.cpp, MainDlgUpdates.cpp, MainDlgControlPanel.cpp.
#pragma once

#include <windows.h>
#include <shellapi.h>

#include "controller/TrayMouseTrack.h"
#include "frame/CriticalSection.h"
#include "frame/DialogImpl.h"
#include "frame/MessageLoop.h"
#include "frame/UpdateUI.h"
#include "hlxHealthReport.h"
#include "hlxHealthResult.h"
#include "resource.h"
#include "watchers/FileThread.h"
#include "watchers/RegThread.h"

// The numbers of the timer, of the callback and of the icons are part of the interface, do
// not correct.
constexpr UINT_PTR IDT_START = 0xdeadbeef;

// The callback of all tray icons: wParam is the icon's id, the low word of lParam the mouse
// message.
constexpr UINT WM_TRAYNOTIFY = 10053;

constexpr UINT TRAY_ID_HEALTH = 10053;
constexpr UINT TRAY_ID_UPDATES = 10054;
constexpr UINT TRAY_ID_INSTALLED = 10055;
constexpr UINT TRAY_ID_DOWNLOADS = 10056;

// Health states. The unknown state has no icon.
constexpr LONG HEALTH_UNKNOWN = HLX_HEALTH_UNKNOWN;
constexpr LONG HEALTH_HIGH = HLX_HEALTH_HIGH;

class CMainDlg : public CDialogImpl<CMainDlg>,
                 public CUpdateUI<CMainDlg>,
                 public CMessageFilter,
                 public CIdleHandler {
public:
    static constexpr int IDD = IDD_MAINDLG;

    CMainDlg() = default;
    // Stops the watchers. If a thread does not end in time, it and its object stay until the
    // process ends.
    ~CMainDlg() override;

    BOOL ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                              LRESULT& result) override;
    BOOL PreTranslateMessage(MSG* message) override;
    BOOL OnIdle() override { return FALSE; }

private:
    // Id and strings of a transient icon.
    struct TransientIcon {
        UINT id;
        UINT tip;
        UINT balloon;
    };

    // Lifetime
    BOOL OnCommand(WORD id, LRESULT& result);
    LRESULT OnInitDialog();
    LRESULT OnDestroy();
    LRESULT OnTimer(UINT_PTR id);
    LRESULT CloseDialog(WORD id);
    void LoadIcons();
    void JoinMessageLoop();
    void StartWatchers();
    void ReleaseUndelivered();

    // Tray
    void SetHealthIcon(LONG state);
    void ShowTransientIcon(NOTIFYICONDATAA& record, const TransientIcon& icon);
    LRESULT OnTrayNotify(UINT iconId, UINT mouseMessage);
    void OnDoubleClick(UINT iconId);
    void FillIconRecord(NOTIFYICONDATAA& record, UINT id) const;
    void SetIconVersion(UINT id) const;
    void ShowContextMenu();
    void RaiseHealthBalloon();
    void LowerHealthBalloon();
    template <class Dialog>
    void RunDialogOf(NOTIFYICONDATAA& record);

    // Health
    LRESULT OnHealthResults(char* buffer);
    void ReactTo(const HealthReport& health);
    void ShowHealthMessage(const HealthReport& health);
    LRESULT OnReassess();

    // Updates
    LRESULT OnGotSWUpdates(char* buffer);
    LRESULT OnGotQueuedInstalls(HKEY hive, LPCSTR keyPath);
    LRESULT OnGotDownloadResults(HKEY hive, LPCSTR keyPath);

    // The agent's Control Panel applet
    LRESULT OnShowApplet(WORD commandId);
    void ShowSheet(HMODULE library, WORD commandId);

    void SetFlag(BYTE& flag, BYTE value) {
        const CCriticalSectionLock guard(m_csState);
        flag = value;
    }

    BYTE m_bReassessPending = 0;  // a request was sent, and no health result has arrived since
    BYTE m_bHealthSheetOpen = 0;
    BYTE m_bAboutSheetOpen = 0;
    BYTE m_bMessageBoxOpen = 0;
    BYTE m_bStarting = 1;     // health results are dropped unread
    BYTE m_bAutoInstall = 0;  // in the last good result: available updates are not announced
    BYTE m_bHaveResult = 0;   // a good health result has arrived
    NOTIFYICONDATAA m_nidHealth{};
    NOTIFYICONDATAA m_nidUpdates{};
    NOTIFYICONDATAA m_nidInstalled{};
    NOTIFYICONDATAA m_nidDownloads{};
    CFileThread* m_pSwCacheThread = nullptr;
    CFileThread* m_pHealthThread = nullptr;
    CRegThread* m_pResultsThread = nullptr;
    CRegThread* m_pDownloadsThread = nullptr;
    CTrayMouseTrack* m_pTrayMouseTrack = nullptr;  // never created: the pointer raises no balloon
    LONG m_nHealthState = HEALTH_UNKNOWN;          // the state of the icon
    CCriticalSection m_csState;
    // Set in WM_DESTROY. Later clicks and commands do nothing, since a dialog would keep the
    // process alive.
    bool m_bDestroying = false;
};
