#include "controller/TrayMouseTrack.h"

#include <process.h>

#include <cstdlib>

namespace {

constexpr DWORD kLookMs = 50;  // between two readings of the pointer position
constexpr DWORD kDestroyMs = 6000;
constexpr UINT kDefaultSize = 5;

}  // namespace

CTrayMouseTrack::CTrayMouseTrack(HWND notifyWindow, UINT message, UINT wParam)
    : m_hNotifyWnd(notifyWindow),
      m_uMessage(message),
      m_wPostParam(wParam),
      m_hStopEvent(CreateEventA(nullptr, FALSE, FALSE, nullptr)) {
    m_hThread.reset(
        reinterpret_cast<HANDLE>(_beginthreadex(nullptr, 0, ThreadProc, this, 0, nullptr)));
}

CTrayMouseTrack::~CTrayMouseTrack() {
    if (!Stop(kDestroyMs)) TerminateThread(m_hThread.get(), 0);
    m_hThread.reset();  // before the event that it waits for
    m_hStopEvent.reset();
}

void CTrayMouseTrack::OnMouseMove() {
    const CCriticalSectionLock guard(m_csMove);
    if (POINT pointer{}; GetCursorPos(&pointer)) {
        m_ptAnchor.x = pointer.x;
        m_ptAnchor.y = pointer.y;
    }
    if (!m_bHovering.exchange(TRUE)) Post(WM_MOUSEHOVER);
}

bool CTrayMouseTrack::Stop(DWORD limit) {
    if (!m_hThread) return true;
    SetEvent(m_hStopEvent.get());
    return WaitForSingleObject(m_hThread.get(), limit) != WAIT_TIMEOUT;
}

unsigned __stdcall CTrayMouseTrack::ThreadProc(void* self) {
    static_cast<CTrayMouseTrack*>(self)->Run();
    return 0;
}

void CTrayMouseTrack::Run() {
    Size size{kDefaultSize, kDefaultSize};
    if (WaitForSingleObject(m_hStopEvent.get(), 0) != WAIT_TIMEOUT) return;
    do {
        if (m_bHovering && HasLeft(size)) {
            m_bHovering = FALSE;
            Post(WM_MOUSELEAVE);
        }
    } while (WaitForSingleObject(m_hStopEvent.get(), kLookMs) == WAIT_TIMEOUT);
}

// If the position cannot be read, the pointer has not left; if the size cannot be read, the last
// size is used. At exactly the width or height the pointer has left.
bool CTrayMouseTrack::HasLeft(Size& size) const {
    POINT pointer{};
    if (!GetCursorPos(&pointer)) return false;
    SystemParametersInfoA(SPI_GETMOUSEHOVERWIDTH, 0, &size.width, 0);
    SystemParametersInfoA(SPI_GETMOUSEHOVERHEIGHT, 0, &size.height, 0);
    return std::abs(pointer.x - m_ptAnchor.x) >= static_cast<LONG>(size.width) ||
           std::abs(pointer.y - m_ptAnchor.y) >= static_cast<LONG>(size.height);
}

void CTrayMouseTrack::Post(LPARAM what) const {
    if (IsWindow(m_hNotifyWnd)) PostMessageA(m_hNotifyWnd, m_uMessage, m_wPostParam, what);
}
