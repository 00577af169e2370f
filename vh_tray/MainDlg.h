// The controller: a dialog that is never shown, on which the whole applet hangs. Its window is the
// one address for everything that can happen: callbacks of the tray icons, messages of the watcher
// threads, the start timer and the commands of the menu.
//
// Everything runs on the thread of the message loop. Handlers nest: message boxes, modal dialogs
// and the applet's sheet run loops of their own, which go on delivering to the same dispatch. The
// flags guard against that, not the lock.
//
// The reactions stand in files by subject: MainDlg.cpp (dispatch and lifetime), MainDlgTray.cpp,
// MainDlgHealth.cpp, MainDlgUpdates.cpp, MainDlgApplet.cpp.
#pragma once

#include <windows.h>
#include <shellapi.h>

#include "FileThread.h"
#include "RegThread.h"
#include "TrayMouseTrack.h"
#include "frame/CriticalSection.h"
#include "frame/DialogImpl.h"
#include "frame/MessageLoop.h"
#include "frame/UpdateUI.h"
#include "hlxHealthResult.h"
#include "resource.h"

constexpr UINT_PTR IDT_START = 0xdeadbeef;

// The callback of all tray icons: wParam is the icon's id, the low word of lParam the mouse
// message.
constexpr UINT WM_TRAYNOTIFY = 10053;

constexpr UINT TRAY_ID_HEALTH = 10053;
constexpr UINT TRAY_ID_UPDATES = 10054;
constexpr UINT TRAY_ID_INSTALLED = 10055;
constexpr UINT TRAY_ID_DOWNLOADS = 10056;

// What the agent's assessment says of the machine. Unknown has no icon on the tray.
constexpr LONG HEALTH_UNKNOWN = HLX_HEALTH_UNKNOWN;
constexpr LONG HEALTH_HIGH = HLX_HEALTH_HIGH;

class CMainDlg : public CDialogImpl<CMainDlg>,
                 public CUpdateUI<CMainDlg>,
                 public CMessageFilter,
                 public CIdleHandler {
public:
    static constexpr int IDD = IDD_MAINDLG;

    CMainDlg() = default;
    // Stops the watchers. One whose thread does not end in time is left alone, thread and object,
    // until the process ends.
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
    struct HealthResult;
    LRESULT OnHealthResults(char* buffer);
    void ReactTo(const HealthResult& health);
    void ShowHealthMessage(const HealthResult& health);
    LRESULT OnReassess();

    // Updates
    LRESULT OnGotSWUpdates(char* buffer);
    LRESULT OnGotQueuedInstalls(HKEY hive, LPCSTR keyPath);
    LRESULT OnGotDownloadResults(HKEY hive, LPCSTR keyPath);

    // The agent's applet
    LRESULT OnShowApplet(WORD commandId);
    void ShowSheet(HMODULE library, WORD commandId);

    void SetFlag(BYTE& flag, BYTE value) {
        const CCriticalSectionLock guard(m_csState);
        flag = value;
    }

    BYTE m_bReassessPending = 0;  // a reassess request went out and no health result has come since
    BYTE m_bHealthSheetOpen = 0;
    BYTE m_bAboutSheetOpen = 0;
    BYTE m_bMessageBoxOpen = 0;
    BYTE m_bStarting = 1;     // health results are dropped unread
    BYTE m_bAutoInstall = 0;  // of the last good result: available updates are not announced
    BYTE m_bHaveResult = 0;   // a good health result has been seen
    NOTIFYICONDATAA m_nidHealth{};
    NOTIFYICONDATAA m_nidUpdates{};
    NOTIFYICONDATAA m_nidInstalled{};
    NOTIFYICONDATAA m_nidDownloads{};
    CFileThread* m_pSwCacheThread = nullptr;
    CFileThread* m_pHealthThread = nullptr;
    CRegThread* m_pResultsThread = nullptr;
    CRegThread* m_pDownloadsThread = nullptr;
    CTrayMouseTrack* m_pTrayMouseTrack = nullptr;  // nothing makes one: hovering raises no balloon
    LONG m_nHealthState = HEALTH_UNKNOWN;          // what the tray shows
    CCriticalSection m_csState;
};
