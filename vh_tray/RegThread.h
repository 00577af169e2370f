// A thread that watches one registry key with its subkeys and posts a message when a value in them
// has changed. Unlike the file watcher it reads nothing: the message says which key to look at.
#pragma once

#include "FileThread.h"

class CRegThread : public CFileThread {
public:
    CRegThread() = default;

    // Starts watching the key, which is made if it is missing; to be called once. With `firstPass`
    // the message is posted once without any change. Gives whether the thread was started.
    //
    // The message has `hive` as wParam and the watcher's own copy of `path` as lParam.
    bool Start(HKEY hive, LPCSTR path, HWND notifyWindow, UINT message, bool firstPass);

private:
    static unsigned __stdcall ThreadProc(void* self);
    bool PauseBeforeRetry() const;
    bool RunPass(HANDLE notifyEvent);
    HKEY OpenArmed(HANDLE notifyEvent);

    HKEY m_hHive = HKEY_LOCAL_MACHINE;
};
