// The icons in the notification area, and their mouse messages.
#include "controller/MainDlg.h"
#include "controller/ModalCall.h"
#include "dialogs/DownloadDialog.h"
#include "dialogs/InstallDialog.h"
#include "dialogs/UpdatesDialog.h"
#include "hlxOwned.h"

namespace {

// Capacity for a text of the health icon, in bytes with the terminator. One less than the record
// has: part of the interface, do not correct.
constexpr int kHealthTipCapacity = 127;
constexpr int kHealthBalloonCapacity = 255;
constexpr int kHealthTitleCapacity = 63;

using OwnedMenu = HlxOwned<HMENU, DestroyMenu>;

void LoadInto(UINT id, char* text, int capacity) {
    LoadStringA(_Module.GetModuleInstance(), id, text, capacity);
}

HICON LoadStateIcon(UINT id) {
    return LoadIconA(_Module.GetModuleInstance(), MAKEINTRESOURCEA(id));
}

// For a point outside all monitors, moves x to the nearest work area, so that the menu is visible.
LONG VisibleX(POINT point) {
    if (MonitorFromPoint(point, MONITOR_DEFAULTTONULL)) return point.x;
    MONITORINFO monitor{};
    monitor.cbSize = sizeof monitor;
    if (!GetMonitorInfoA(MonitorFromPoint(point, MONITOR_DEFAULTTONEAREST), &monitor))
        return point.x;
    if (point.x < monitor.rcWork.left) return monitor.rcWork.left;
    if (point.x > monitor.rcWork.right) return monitor.rcWork.right;
    return point.x;
}

}  // namespace

void CMainDlg::FillIconRecord(NOTIFYICONDATAA& record, UINT id) const {
    record.cbSize = NOTIFYICONDATAA_V3_SIZE;
    record.hWnd = m_hWnd;
    record.uID = id;
    record.uFlags = NIF_MESSAGE | NIF_ICON | NIF_TIP | NIF_INFO;
    record.uCallbackMessage = WM_TRAYNOTIFY;
    record.uTimeout = 1000;
    record.dwInfoFlags = NIIF_USER;
}

// The state selects icon and texts. Each call that the shell accepts shows the balloon.
void CMainDlg::SetHealthIcon(LONG state) {
    if (state < HEALTH_UNKNOWN || state > HEALTH_HIGH) return;
    const DWORD call = state == HEALTH_UNKNOWN            ? NIM_DELETE
                       : m_nHealthState != HEALTH_UNKNOWN ? NIM_MODIFY
                                                          : NIM_ADD;
    const auto offset = static_cast<UINT>(state);
    FillIconRecord(m_nidHealth, TRAY_ID_HEALTH);
    if (m_nidHealth.hIcon) DestroyIcon(m_nidHealth.hIcon);
    m_nidHealth.hIcon = LoadStateIcon(IDI_HEALTH + offset);
    LoadInto(IDS_HEALTH_TIP + offset, m_nidHealth.szTip, kHealthTipCapacity);
    LoadInto(IDS_HEALTH_BALLOON + offset, m_nidHealth.szInfo, kHealthBalloonCapacity);
    LoadInto(IDS_HEALTH_TITLE, m_nidHealth.szInfoTitle, kHealthTitleCapacity);
    if (!Shell_NotifyIconA(call, &m_nidHealth)) return;
    m_nHealthState = state;
    SetIconVersion(TRAY_ID_HEALTH);
}

void CMainDlg::ShowTransientIcon(NOTIFYICONDATAA& record, const TransientIcon& icon) {
    FillIconRecord(record, icon.id);
    record.hIcon = LoadStateIcon(IDI_HEALTH);
    LoadInto(icon.tip, record.szTip, sizeof record.szTip);
    LoadInto(icon.balloon, record.szInfo, sizeof record.szInfo);
    LoadInto(IDS_PRODUCT, record.szInfoTitle, sizeof record.szInfoTitle);
    // Fails if the icon is shown already; its balloon is then not shown again.
    if (Shell_NotifyIconA(NIM_ADD, &record)) SetIconVersion(icon.id);
}

// Uses a separate record: version and time-out of the balloon are members of one union.
void CMainDlg::SetIconVersion(UINT id) const {
    NOTIFYICONDATAA record{};
    record.cbSize = NOTIFYICONDATAA_V3_SIZE;
    record.hWnd = m_hWnd;
    record.uID = id;
    record.uVersion = NOTIFYICON_VERSION;
    Shell_NotifyIconA(NIM_SETVERSION, &record);
}

LRESULT CMainDlg::OnTrayNotify(UINT iconId, UINT mouseMessage) {
    switch (mouseMessage) {
        case WM_LBUTTONDBLCLK:
            OnDoubleClick(iconId);
            break;
        case WM_RBUTTONUP:
            if (iconId == TRAY_ID_HEALTH) ShowContextMenu();
            break;
        case WM_MOUSEMOVE:
            if (m_pTrayMouseTrack) m_pTrayMouseTrack->OnMouseMove();
            break;
        case WM_MOUSEHOVER:
            if (m_pTrayMouseTrack) RaiseHealthBalloon();
            break;
        case WM_MOUSELEAVE:
            if (m_pTrayMouseTrack) LowerHealthBalloon();
            break;
        default:
            break;
    }
    return 0;
}

void CMainDlg::OnDoubleClick(UINT iconId) {
    switch (iconId) {
        case TRAY_ID_HEALTH:
            OnShowApplet(ID_DISPLAY_HEALTH);
            break;
        case TRAY_ID_UPDATES:
            RunDialogOf<CUpdatesDialog>(m_nidUpdates);
            break;
        case TRAY_ID_INSTALLED:
            RunDialogOf<CInstallDialog>(m_nidInstalled);
            break;
        case TRAY_ID_DOWNLOADS:
            RunDialogOf<CDownloadDialog>(m_nidDownloads);
            break;
        default:
            break;
    }
}

// The icon is removed when the dialog has closed, whichever button was used.
template <class Dialog>
void CMainDlg::RunDialogOf(NOTIFYICONDATAA& record) {
    const CModalCall call(m_hWnd);
    Dialog().DoModal(m_hWnd);
    Shell_NotifyIconA(NIM_DELETE, &record);
}

void CMainDlg::RaiseHealthBalloon() {
    m_nidHealth.uFlags |= NIF_INFO;
    Shell_NotifyIconA(NIM_MODIFY, &m_nidHealth);
}

void CMainDlg::LowerHealthBalloon() {
    m_nidHealth.uFlags &= ~static_cast<UINT>(NIF_INFO);
    Shell_NotifyIconA(NIM_MODIFY, &m_nidHealth);
    m_nidHealth.uFlags |= NIF_INFO;
}

// The window must be in the foreground, and a message must follow the menu; otherwise a click
// outside the menu would not close it.
void CMainDlg::ShowContextMenu() {
    POINT pointer{};
    GetCursorPos(&pointer);
    const CModalCall call(m_hWnd);
    const OwnedMenu menu(LoadMenuA(_Module.GetModuleInstance(), MAKEINTRESOURCEA(IDR_TRAYMENU)));
    if (!menu) return;
    const OwnedMenu popup(GetSubMenu(menu.get(), 0));
    if (!popup) return;
    SetMenuDefaultItem(popup.get(), ID_DISPLAY_HEALTH, FALSE);
    SetForegroundWindow(m_hWnd);
    TrackPopupMenu(popup.get(), TPM_RIGHTBUTTON, VisibleX(pointer), pointer.y, 0, m_hWnd, nullptr);
    PostMessageA(m_hWnd, WM_NULL, 0, 0);
}
