// A thread that watches one registry key with its subkeys and posts a message when a value in them
// has changed. It reads no values; the message names the key.
#pragma once

#include "watchers/FileThread.h"

class CRegThread : public CFileThread {
public:
    CRegThread() = default;

    // Starts to watch the key, which is created if it is missing. Call it once. With `firstPass`
    // the message is posted once without a change. Returns whether the thread was started.
    //
    // The message has `hive` as wParam and, as lParam, a copy of `path` that the watcher owns.
    bool Start(HKEY hive, LPCSTR path, HWND notifyWindow, UINT message, bool firstPass);

private:
    static unsigned __stdcall ThreadProc(void* self);
    bool PauseBeforeRetry();
    void AwaitChange(HANDLE notifyEvent) const;
    bool RunPass(HANDLE notifyEvent);
    HlxKey OpenArmed(HANDLE notifyEvent);

    HKEY m_hHive = HKEY_LOCAL_MACHINE;
};
