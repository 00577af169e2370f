// A thread that watches one file and posts its contents to a window when it has changed.
#pragma once

#include <windows.h>

#include <atomic>

class CFileThread {
public:
    CFileThread();
    // Does not stop the thread: the owner calls Stop first, and keeps the object for good if the
    // thread has not ended.
    virtual ~CFileThread();
    CFileThread(const CFileThread&) = delete;
    CFileThread& operator=(const CFileThread&) = delete;

    // Starts watching `path`, of which it keeps a copy; to be called once. With `firstPass` the
    // file is read and posted at once, whatever its time says. Gives whether the thread was
    // started.
    //
    // The message has the size of the contents in bytes as wParam and as lParam a buffer from array
    // new, the contents and a terminating zero, which belongs to the receiver.
    bool Start(LPCSTR path, HWND notifyWindow, UINT message, bool firstPass);

    // Tells the thread to end and waits for it, at most `limit` milliseconds. True: it has ended,
    // or none was started.
    bool Stop(DWORD limit);

    // Makes the next pass read and post the file as a first pass does.
    void ForceRead() { m_bFirstPass = 1; }

protected:
    using ThreadProcedure = unsigned(__stdcall*)(void*);

    bool StartThread(ThreadProcedure procedure, LPCSTR path, HWND notifyWindow, UINT message,
                     bool firstPass);
    bool IsStopping() const { return WaitForSingleObject(m_hStopEvent, 0) != WAIT_TIMEOUT; }

    std::atomic<BYTE> m_bFirstPass;  // raised by the owner, cleared by the thread
    UINT m_uMessage;
    unsigned m_dwThreadId;
    DWORD m_dwPollMs;
    char* m_pszPath;  // from _strdup
    HWND m_hNotifyWnd;
    HANDLE m_hStopEvent;
    HANDLE m_hThread;

private:
    static unsigned __stdcall ThreadProc(void* self);
    bool RunPass();
    void PostContents(HANDLE file);
};
