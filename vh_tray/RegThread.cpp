#include "RegThread.h"

#include <cstddef>

namespace {
// Between attempts at a key that cannot be opened or watched.
constexpr DWORD kRetryMs = 1000;
}  // namespace

bool CRegThread::Start(HKEY hive, LPCSTR path, HWND notifyWindow, UINT message, bool firstPass) {
    m_hHive = hive;
    return StartThread(ThreadProc, path, notifyWindow, message, firstPass);
}

unsigned __stdcall CRegThread::ThreadProc(void* self) {
    if (!self) return static_cast<unsigned>(-1);
    const HANDLE notifyEvent = CreateEventA(nullptr, FALSE, FALSE, nullptr);
    if (!notifyEvent) return 0;
    while (static_cast<CRegThread*>(self)->RunPass(notifyEvent)) {
    }
    CloseHandle(notifyEvent);
    return 0;
}

// False: the thread is to end.
bool CRegThread::RunPass(HANDLE notifyEvent) {
    const HKEY key = OpenArmed(notifyEvent);
    if (!key) return WaitForSingleObject(m_hStopEvent, kRetryMs) == WAIT_TIMEOUT;
    if (!m_bFirstPass) {
        const HANDLE events[] = {notifyEvent, m_hStopEvent};
        WaitForMultipleObjects(2, events, FALSE, INFINITE);
    }
    const bool stopping = IsStopping();
    if (!stopping) {
        m_bFirstPass = 0;
        PostMessageA(m_hNotifyWnd, m_uMessage, reinterpret_cast<WPARAM>(m_hHive),
                     reinterpret_cast<LPARAM>(m_pszPath));
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
