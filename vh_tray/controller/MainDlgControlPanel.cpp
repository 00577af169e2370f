// Runs the Control Panel applet of the agent inside this process, on a named page.
#include <windows.h>
#include <cpl.h>

#include <string>

#include "controller/CplPath.h"
#include "controller/MainDlg.h"
#include "controller/ModalCall.h"
#include "hlxOwned.h"
#include "shared/StringTable.h"

namespace {

constexpr UINT kSheetCaption = 103;  // in the library's string table
constexpr int kCaptionCapacity = 1023;

LPCSTR DialogClass() { return MAKEINTATOM(32770); }

HWND FindSheet(HMODULE library) {
    char caption[kCaptionCapacity] = "";
    LoadStringA(library, kSheetCaption, caption, kCaptionCapacity);
    return FindWindowA(DialogClass(), caption);
}

// Shows the sheet as the Control Panel does, and returns when the user has closed it. `onClosed`
// runs before CPL_STOP. By then the owner may be destroyed, and null.
template <class OnClosed>
void RunControlPanelApplet(APPLET_PROC entry, const HWND& owner, std::string& page,
                           OnClosed onClosed) {
    const CModalCall call(owner);
    if (entry(owner, CPL_INIT, 0, 0) == 0) {
        onClosed();
        return;
    }
    const LONG count = entry(owner, CPL_GETCOUNT, 0, 0);
    for (LONG index = 0; index < count; ++index) {
        CPLINFO info{};
        entry(owner, CPL_INQUIRE, index, reinterpret_cast<LPARAM>(&info));
    }
    entry(owner, CPL_STARTWPARMSA, 0, reinterpret_cast<LPARAM>(page.data()));
    onClosed();
    entry(owner, CPL_STOP, 0, 0);
    entry(owner, CPL_EXIT, 0, 0);
}

}  // namespace

LRESULT CMainDlg::OnShowApplet(WORD commandId) {
    const HlxModule library(LoadLibraryA(GetCplPath()));
    if (library) ShowSheet(library.get(), commandId);
    return 0;
}

// Messages are dispatched while a sheet is open, so this function can be called inside itself. For
// a page that is open, it brings that page to the front; for the other page, it opens a second
// sheet.
void CMainDlg::ShowSheet(HMODULE library, WORD commandId) {
    const auto entry = reinterpret_cast<APPLET_PROC>(GetProcAddress(library, "CPlApplet"));
    const HWND sheet = FindSheet(library);
    if (!entry) return;

    const bool isHealth = commandId == ID_DISPLAY_HEALTH;
    std::string page;
    LoadText(isHealth ? IDS_PAGE_HEALTH : IDS_PAGE_ABOUT, page);
    BYTE& isOpen = isHealth ? m_bHealthSheetOpen : m_bAboutSheetOpen;
    const bool wasOpen = isOpen != 0;
    SetFlag(isOpen, 1);

    const HWND openPage = FindWindowExA(sheet, nullptr, DialogClass(), page.c_str());
    if (!wasOpen)
        RunControlPanelApplet(entry, m_hWnd, page, [&] { SetFlag(isOpen, 0); });
    else if (IsWindow(openPage))
        SetForegroundWindow(openPage);
}
