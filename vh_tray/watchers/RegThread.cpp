#include "watchers/RegThread.h"

bool CRegThread::Start(HKEY hive, LPCSTR path, HWND notifyWindow, UINT message, bool firstPass) {
    m_hHive = hive;
    return StartThread(ThreadProc, path, notifyWindow, message, firstPass);
}

unsigned __stdcall CRegThread::ThreadProc(void* self) {
    if (!self) return static_cast<unsigned>(-1);
    auto& watcher = *static_cast<CRegThread*>(self);
    const auto create = [] { return CreateEventA(nullptr, FALSE, FALSE, nullptr); };
    HlxHandle notifyEvent(create());
    for (; !notifyEvent; notifyEvent.reset(create()))
        if (!watcher.PauseBeforeRetry()) return 0;
    while (watcher.RunPass(notifyEvent.get())) {
    }
    return 0;
}

// Pauses after an event, a key or a notification is not available. A change before the next success
// gives no signal, so the success counts as a change. False: the thread is to end.
bool CRegThread::PauseBeforeRetry() {
    m_bFirstPass = 1;
    return !IsStopping(kRetryMs);
}

// Also returns for the stop event. A wait that fails is repeated; the notification stays armed.
void CRegThread::AwaitChange(HANDLE notifyEvent) const {
    const HANDLE events[] = {notifyEvent, m_hStopEvent.get()};
    while (WaitForMultipleObjects(2, events, FALSE, INFINITE) == WAIT_FAILED &&
           !IsStopping(kRetryMs)) {
    }
}

// False: the thread is to end.
bool CRegThread::RunPass(HANDLE notifyEvent) {
    const HlxKey key = OpenArmed(notifyEvent);
    if (!key) return PauseBeforeRetry();
    if (!m_bFirstPass) AwaitChange(notifyEvent);
    const bool stopping = IsStopping();
    if (!stopping) {
        m_bFirstPass = 0;
        PostMessageA(m_hNotifyWnd, m_uMessage, reinterpret_cast<WPARAM>(m_hHive),
                     reinterpret_cast<LPARAM>(m_pszPath.get()));
        // The next pass has to report a change that has happened since: its signal is reset
        // together with that of the close.
        if (WaitForSingleObject(notifyEvent, 0) != WAIT_TIMEOUT) m_bFirstPass = 1;
    }
    return !stopping;
}

// Opens the key and arms one notification; null if either fails.
HlxKey CRegThread::OpenArmed(HANDLE notifyEvent) {
    HKEY created = nullptr;
    if (RegCreateKeyExA(m_hHive, m_pszPath.get(), 0, nullptr, 0, KEY_READ, nullptr, &created,
                        nullptr) != ERROR_SUCCESS)
        return nullptr;
    HlxKey key(created);
    // If its notification was still armed, closing the key of the previous pass has signalled the
    // event. That is not a change.
    ResetEvent(notifyEvent);
    if (RegNotifyChangeKeyValue(key.get(), TRUE, REG_NOTIFY_CHANGE_LAST_SET, notifyEvent, TRUE) !=
        ERROR_SUCCESS)
        key.reset();
    return key;
}
