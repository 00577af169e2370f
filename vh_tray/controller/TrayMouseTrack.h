// Detects when the pointer hovers over a tray icon and when it leaves it; the shell reports moves
// only. Both are posted in the form of a tray callback.
#pragma once

#include <windows.h>

#include <atomic>

#include "frame/CriticalSection.h"
#include "hlxOwned.h"

class CTrayMouseTrack {
public:
    // Starts the thread. Posts go to `notifyWindow` as `message` with `wParam` and, as lParam,
    // WM_MOUSEHOVER or WM_MOUSELEAVE.
    CTrayMouseTrack(HWND notifyWindow, UINT message, UINT wParam);
    // Ends the thread, by force if it does not end in time.
    virtual ~CTrayMouseTrack();
    CTrayMouseTrack(const CTrayMouseTrack&) = delete;
    CTrayMouseTrack& operator=(const CTrayMouseTrack&) = delete;

    // Call it for each move over the icon, on the thread of the window.
    void OnMouseMove();

    // Stops the thread and waits at most `limit` milliseconds for its end. False: it has not ended
    // in time.
    bool Stop(DWORD limit);

private:
    struct Size {
        UINT width, height;  // pixels
    };

    static unsigned __stdcall ThreadProc(void* self);
    void Run();
    bool HasLeft(Size& size) const;
    void Post(LPARAM what) const;

    const HWND m_hNotifyWnd;
    const UINT m_uMessage;
    const UINT m_wPostParam;
    struct {
        std::atomic<LONG> x{0}, y{0};
    } m_ptAnchor;  // position of the pointer at the last move
    HlxHandle m_hThread;
    HlxHandle m_hStopEvent;
    std::atomic<BOOL> m_bHovering{FALSE};  // over the icon; a leave message is still to be posted
    CCriticalSection m_csMove;
};
