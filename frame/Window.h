// A window handle with its Win32 functions. It does not own the window.
#pragma once

#include <windows.h>

class CWindow {
public:
    explicit CWindow(HWND window = nullptr) : m_hWnd(window) {}

    operator HWND() const { return m_hWnd; }

    LRESULT SendMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
        return ::SendMessageA(m_hWnd, message, wParam, lParam);
    }
    CWindow GetDlgItem(int id) const { return CWindow(::GetDlgItem(m_hWnd, id)); }
    BOOL SetWindowText(LPCSTR text) const { return ::SetWindowTextA(m_hWnd, text); }
    BOOL SetDlgItemText(int id, LPCSTR text) const { return ::SetDlgItemTextA(m_hWnd, id, text); }
    BOOL ShowWindow(int command) const { return ::ShowWindow(m_hWnd, command); }
    BOOL EnableWindow(BOOL enable) const { return ::EnableWindow(m_hWnd, enable); }
    HWND SetFocus() const { return ::SetFocus(m_hWnd); }
    BOOL GetWindowRect(RECT* rect) const { return ::GetWindowRect(m_hWnd, rect); }
    BOOL MoveWindow(const RECT& rect) const {
        return ::MoveWindow(m_hWnd, rect.left, rect.top, rect.right - rect.left,
                            rect.bottom - rect.top, TRUE);
    }
    // Converts screen coordinates to client coordinates of this window, one corner after the other.
    void ScreenToClient(RECT* rect) const {
        POINT corners[] = {{rect->left, rect->top}, {rect->right, rect->bottom}};
        for (POINT& corner : corners) ::ScreenToClient(m_hWnd, &corner);
        *rect = {corners[0].x, corners[0].y, corners[1].x, corners[1].y};
    }
    void SetRedraw(bool redraw) const { SendMessage(WM_SETREDRAW, redraw ? TRUE : FALSE); }
    BOOL DestroyWindow() const { return ::DestroyWindow(m_hWnd); }

    HWND m_hWnd;
};

// Redrawing of the window is off while the object exists.
class CRedrawPause {
public:
    explicit CRedrawPause(const CWindow& window) : m_window(window) { m_window.SetRedraw(false); }
    ~CRedrawPause() { m_window.SetRedraw(true); }
    CRedrawPause(const CRedrawPause&) = delete;
    CRedrawPause& operator=(const CRedrawPause&) = delete;

private:
    const CWindow& m_window;
};
