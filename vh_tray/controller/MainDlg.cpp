// The dispatch of the controller, its start and its end.
#include "controller/MainDlg.h"

#include <winsock2.h>
#include <objbase.h>

#include <new>

#include "controller/RegisteredMessages.h"
#include "hlxInterface.h"
#include "shared/AgentPaths.h"

namespace {

constexpr DWORD kStopHealthMs = 5000;
constexpr DWORD kStopMs = 2000;

// Creates and starts a watcher. Null: out of memory, or its message is not registered.
template <class Watcher, class... Target>
Watcher* StartWatcher(HWND window, CRegisteredMessage& message, bool firstPass, Target... target) {
    if (message.Number() == WM_NULL) return nullptr;
    auto* watcher = new (std::nothrow) Watcher;
    if (watcher) watcher->Start(target..., window, message.Number(), firstPass);
    return watcher;
}

// Stops the watcher, if there is one. A watcher whose thread does not end is not deleted: the
// thread uses it. Tried twice, because a failed SetEvent or a failed wait does not show whether the
// thread has ended.
template <class Watcher>
void StopOrForget(Watcher*& watcher) {
    if (watcher && !watcher->Stop(kStopMs) && !watcher->Stop(kStopMs)) watcher = nullptr;
}

}  // namespace

CMainDlg::~CMainDlg() {
    StopOrForget(m_pHealthThread);
    StopOrForget(m_pSwCacheThread);
    if (m_pTrayMouseTrack) m_pTrayMouseTrack->Stop(kStopMs);
    StopOrForget(m_pResultsThread);
    StopOrForget(m_pDownloadsThread);

    delete m_pDownloadsThread;
    delete m_pResultsThread;
    delete m_pHealthThread;
    delete m_pSwCacheThread;
    delete m_pTrayMouseTrack;
}

BOOL CMainDlg::ProcessWindowMessage(HWND, UINT message, WPARAM wParam, LPARAM lParam,
                                    LRESULT& result) {
    if (m_bDestroying && (message == WM_TRAYNOTIFY || message == WM_COMMAND)) return TRUE;
    switch (message) {
        case WM_NULL:  // also the number of a message that could not be registered
            return FALSE;
        case WM_INITDIALOG:
            result = OnInitDialog();
            return TRUE;
        case WM_DESTROY:
            result = OnDestroy();
            return TRUE;
        case WM_TIMER:
            result = OnTimer(wParam);
            return TRUE;
        case WM_TRAYNOTIFY:
            result = OnTrayNotify(static_cast<UINT>(wParam), LOWORD(lParam));
            return TRUE;
        case WM_COMMAND:
            return OnCommand(LOWORD(wParam), result);
        default:
            break;
    }
    if (message == g_msgHealthResults.Number())
        result = OnHealthResults(reinterpret_cast<char*>(lParam));
    else if (message == g_msgSWUpdates.Number())
        result = OnGotSWUpdates(reinterpret_cast<char*>(lParam));
    else if (message == g_msgQueuedInstalls.Number())
        result =
            OnGotQueuedInstalls(reinterpret_cast<HKEY>(wParam), reinterpret_cast<LPCSTR>(lParam));
    else if (message == g_msgDownloadResults.Number())
        result =
            OnGotDownloadResults(reinterpret_cast<HKEY>(wParam), reinterpret_cast<LPCSTR>(lParam));
    else
        return FALSE;
    return TRUE;
}

BOOL CMainDlg::OnCommand(WORD id, LRESULT& result) {
    switch (id) {
        case ID_REASSESS:
            result = OnReassess();
            return TRUE;
        case ID_DISPLAY_HEALTH:
        case ID_ABOUT:
            result = OnShowApplet(id);
            return TRUE;
        case ID_EXIT:
        case IDOK:
        case IDCANCEL:
            result = CloseDialog(id);
            return TRUE;
        default:
            return FALSE;
    }
}

BOOL CMainDlg::PreTranslateMessage(MSG* message) { return IsDialogMessageA(m_hWnd, message); }

LRESULT CMainDlg::OnInitDialog() {
    LoadIcons();
    WSADATA sockets{};
    WSAStartup(MAKEWORD(2, 2), &sockets);
    (void)CoInitialize(nullptr);
    try {
        JoinMessageLoop();
        if (m_hWnd) UIAddChildWindowContainer(m_hWnd);
        StartWatchers();
    } catch (const std::bad_alloc&) {
        // An incomplete start would show nothing and block every other instance.
        DestroyWindow();
        return 0;
    }
    SetHealthIcon(HEALTH_UNKNOWN);
    m_bStarting = 1;
    SetTimer(m_hWnd, IDT_START, 0, nullptr);
    return 1;
}

void CMainDlg::LoadIcons() {
    const auto load = [](int width, int height) {
        return reinterpret_cast<LPARAM>(
            LoadImageA(_Module.GetModuleInstance(), MAKEINTRESOURCEA(IDI_HEALTH), IMAGE_ICON,
                       GetSystemMetrics(width), GetSystemMetrics(height), LR_DEFAULTCOLOR));
    };
    SendMessage(WM_SETICON, ICON_BIG, load(SM_CXICON, SM_CYICON));
    SendMessage(WM_SETICON, ICON_SMALL, load(SM_CXSMICON, SM_CYSMICON));
}

void CMainDlg::JoinMessageLoop() {
    CMessageLoop* loop = _Module.GetMessageLoop();
    if (!loop) return;
    loop->AddMessageFilter(this);
    loop->AddIdleHandler(this);
}

// All watchers but that of downloads post once without a change.
void CMainDlg::StartWatchers() {
    m_pHealthThread =
        StartWatcher<CFileThread>(m_hWnd, g_msgHealthResults, true, GetHealthNotifPath());
    m_pSwCacheThread = StartWatcher<CFileThread>(m_hWnd, g_msgSWUpdates, true, GetSwCachePath());
    m_pResultsThread = StartWatcher<CRegThread>(m_hWnd, g_msgQueuedInstalls, true,
                                                HKEY_LOCAL_MACHINE, HLX_INSTALL_RESULTS_KEY);
    m_pDownloadsThread = StartWatcher<CRegThread>(m_hWnd, g_msgDownloadResults, false,
                                                  HKEY_LOCAL_MACHINE, HLX_DOWNLOAD_RESULTS_KEY);
}

// The end of the start. The health watcher reads the file again, since its first result was
// dropped.
LRESULT CMainDlg::OnTimer(UINT_PTR id) {
    if (id != IDT_START) return 0;
    m_bStarting = 0;
    KillTimer(m_hWnd, IDT_START);
    if (m_pHealthThread) m_pHealthThread->ForceRead();
    return 0;
}

// The id becomes the exit code of the process.
LRESULT CMainDlg::CloseDialog(WORD id) {
    m_bDestroying = true;
    DestroyWindow();
    PostQuitMessage(id);
    return 0;
}

LRESULT CMainDlg::OnDestroy() {
    m_bDestroying = true;
    if (m_pHealthThread) m_pHealthThread->Stop(kStopHealthMs);
    if (m_pTrayMouseTrack) m_pTrayMouseTrack->Stop(kStopMs);
    for (NOTIFYICONDATAA* icon : {&m_nidHealth, &m_nidUpdates, &m_nidInstalled, &m_nidDownloads})
        Shell_NotifyIconA(NIM_DELETE, icon);
    ReleaseUndelivered();
    for (const WPARAM size : {ICON_BIG, ICON_SMALL})
        DestroyIcon(reinterpret_cast<HICON>(SendMessage(WM_SETICON, size)));
    CoUninitialize();
    WSACleanup();
    return 0;
}

// Deletes posted buffers that will not be received any more. A quit message, which passes every
// filter, may be removed too: CloseDialog posts its own afterwards.
void CMainDlg::ReleaseUndelivered() {
    for (CRegisteredMessage* carrier : {&g_msgHealthResults, &g_msgSWUpdates}) {
        const UINT number = carrier->Number();
        if (number == WM_NULL) continue;  // as a filter, 0 means every message
        for (MSG message; PeekMessageA(&message, m_hWnd, number, number, PM_REMOVE);)
            if (message.message == number) delete[] reinterpret_cast<char*>(message.lParam);
    }
}
