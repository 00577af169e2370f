// A thread that watches one file and posts its contents to a window when it has changed.
#pragma once

#include <windows.h>

#include <atomic>

#include "hlxOwned.h"

class CFileThread {
public:
    CFileThread();
    // Does not stop the thread. The owner calls Stop first, and never destroys the object if the
    // thread has not ended.
    virtual ~CFileThread() = default;
    CFileThread(const CFileThread&) = delete;
    CFileThread& operator=(const CFileThread&) = delete;

    // Starts to watch `path`, which is copied. Call it once. With `firstPass` the file is read and
    // posted at once, whatever its last-write time is. Returns whether the thread was started.
    //
    // The message has the size of the contents in bytes as wParam. Its lParam is a buffer from
    // array new with the contents and a terminating NUL; the receiver owns it.
    bool Start(LPCSTR path, HWND notifyWindow, UINT message, bool firstPass);

    // Stops the thread and waits at most `limit` milliseconds for its end. True: it has ended, or
    // none was started.
    bool Stop(DWORD limit);

    // The next pass reads and posts the file whatever its last-write time is.
    void ForceRead() { m_bFirstPass = 1; }

protected:
    // The pause before a refused call is repeated.
    static constexpr DWORD kRetryMs = 1000;

    using ThreadProcedure = unsigned(__stdcall*)(void*);

    bool StartThread(ThreadProcedure procedure, LPCSTR path, HWND notifyWindow, UINT message,
                     bool firstPass);
    // Waits at most `limit` milliseconds for the stop event. True: the thread is to end. If the
    // wait fails, returns false after a pause of kRetryMs.
    bool IsStopping(DWORD limit = 0) const;

    std::atomic<BYTE> m_bFirstPass;  // set by the owner, cleared by the thread
    UINT m_uMessage;
    unsigned m_dwThreadId;
    DWORD m_dwPollMs;
    // Closed from the last to the first.
    HlxBlock<char> m_pszPath;
    HWND m_hNotifyWnd;
    HlxHandle m_hStopEvent;
    HlxHandle m_hThread;

private:
    static unsigned __stdcall ThreadProc(void* self);
    bool RunPass();
    void PostContents(HANDLE file);
};
