// The agent's Control Panel applet, run inside this process on a named page.
#include <windows.h>
#include <cpl.h>

#include <string>

#include "CplPath.h"
#include "MainDlg.h"
#include "StringTable.h"

namespace {

constexpr UINT kSheetCaption = 103;  // in the applet library's string table
constexpr int kCaptionCapacity = 1023;

LPCSTR DialogClass() { return MAKEINTATOM(32770); }

HWND FindSheet(HMODULE library) {
    char caption[kCaptionCapacity] = "";
    LoadStringA(library, kSheetCaption, caption, kCaptionCapacity);
    return FindWindowA(DialogClass(), caption);
}

// Shows the applet's sheet as the Control Panel would, and returns when the user has closed it. The
// flag is down again before the applet is told to stop. By then the owner may be gone, and null.
template <class OnClosed>
void DriveApplet(APPLET_PROC applet, const HWND& owner, std::string page, OnClosed onClosed) {
    if (applet(owner, CPL_INIT, 0, 0) == 0) {
        onClosed();
        return;
    }
    const LONG count = applet(owner, CPL_GETCOUNT, 0, 0);
    for (LONG index = 0; index < count; ++index) {
        CPLINFO info{};
        applet(owner, CPL_INQUIRE, index, reinterpret_cast<LPARAM>(&info));
    }
    applet(owner, CPL_STARTWPARMSA, 0, reinterpret_cast<LPARAM>(page.data()));
    onClosed();
    applet(owner, CPL_STOP, 0, 0);
    applet(owner, CPL_EXIT, 0, 0);
}

}  // namespace

LRESULT CMainDlg::OnShowApplet(WORD commandId) {
    if (const HMODULE library = LoadLibraryA(GetCplPath())) {
        ShowSheet(library, commandId);
        FreeLibrary(library);
    }
    return 0;
}

// While a sheet runs the dispatch goes on, so this can be called inside itself: for a page that is
// open it brings that page to the front, for the other page it opens a second sheet.
void CMainDlg::ShowSheet(HMODULE library, WORD commandId) {
    const auto applet = reinterpret_cast<APPLET_PROC>(GetProcAddress(library, "CPlApplet"));
    const HWND sheet = FindSheet(library);
    if (!applet) return;

    const bool isHealth = commandId == ID_DISPLAY_HEALTH;
    std::string page;
    LoadText(isHealth ? IDS_PAGE_HEALTH : IDS_PAGE_ABOUT, page);
    BYTE& isOpen = isHealth ? m_bHealthSheetOpen : m_bAboutSheetOpen;
    const bool wasOpen = isOpen != 0;
    SetFlag(isOpen, 1);

    const HWND openPage = FindWindowExA(sheet, nullptr, DialogClass(), page.c_str());
    if (!wasOpen)
        DriveApplet(applet, m_hWnd, page, [&] { SetFlag(isOpen, 0); });
    else if (IsWindow(openPage))
        SetForegroundWindow(openPage);
}
