#include "RegThread.h"

namespace {
// Between attempts at what the system refuses: the event, the key, the notification.
constexpr DWORD kRetryMs = 1000;
}  // namespace

bool CRegThread::Start(HKEY hive, LPCSTR path, HWND notifyWindow, UINT message, bool firstPass) {
    m_hHive = hive;
    return StartThread(ThreadProc, path, notifyWindow, message, firstPass);
}

unsigned __stdcall CRegThread::ThreadProc(void* self) {
    if (!self) return static_cast<unsigned>(-1);
    auto& watcher = *static_cast<CRegThread*>(self);
    HANDLE notifyEvent = nullptr;
    while (!(notifyEvent = CreateEventA(nullptr, FALSE, FALSE, nullptr)))
        if (!watcher.PauseBeforeRetry()) return 0;
    while (watcher.RunPass(notifyEvent)) {
    }
    CloseHandle(notifyEvent);
    return 0;
}

// False: the thread is to end.
bool CRegThread::PauseBeforeRetry() const {
    return WaitForSingleObject(m_hStopEvent, kRetryMs) == WAIT_TIMEOUT;
}

// False: the thread is to end.
bool CRegThread::RunPass(HANDLE notifyEvent) {
    const HKEY key = OpenArmed(notifyEvent);
    if (!key) return PauseBeforeRetry();
    if (!m_bFirstPass) {
        const HANDLE events[] = {notifyEvent, m_hStopEvent};
        WaitForMultipleObjects(2, events, FALSE, INFINITE);
    }
    const bool stopping = IsStopping();
    if (!stopping) {
        m_bFirstPass = 0;
        PostMessageA(m_hNotifyWnd, m_uMessage, reinterpret_cast<WPARAM>(m_hHive),
                     reinterpret_cast<LPARAM>(m_pszPath));
        // A change that came meanwhile has to be reported by the next pass: its signal would be
        // taken back with that of the close.
        if (WaitForSingleObject(notifyEvent, 0) == WAIT_OBJECT_0) m_bFirstPass = 1;
    }
    RegCloseKey(key);
    return !stopping;
}

// The key with one notification armed, or null.
HKEY CRegThread::OpenArmed(HANDLE notifyEvent) {
    HKEY key = nullptr;
    if (RegCreateKeyExA(m_hHive, m_pszPath, 0, nullptr, 0, KEY_READ, nullptr, &key, nullptr) !=
        ERROR_SUCCESS)
        return nullptr;
    // Closing the key of the pass before has signalled the event if its notification was still
    // armed. That is no change.
    ResetEvent(notifyEvent);
    if (RegNotifyChangeKeyValue(key, TRUE, REG_NOTIFY_CHANGE_LAST_SET, notifyEvent, TRUE) ==
        ERROR_SUCCESS)
        return key;
    RegCloseKey(key);
    return nullptr;
}
