// Simulates the agent's Control Panel library. It has two Control Panel applets: the first one
// shows a sheet with the pages "Health" and "About", the second one does nothing.
//
// Each call reads two environment variables, for tests: with SAMPLE_CPL_REFUSES, CPL_INIT
// returns 0; SAMPLE_CPL_JOURNAL names a file to which the call appends its owner, its message
// number, its first parameter and the page name, if any. An exclamation mark follows a CPLINFO that
// is not zeroed.
#include <windows.h>
#include <cstring>
#include <cpl.h>

#include <array>
#include <cstdio>
#include <cstdlib>

#include "resource.h"

namespace {

struct Page {
    WORD templateId;
    int buttonId;
    const char* title;
};

constexpr std::array<Page, 2> kPages{
    {{IDD_HEALTH, IDC_HEALTH, "Health"}, {IDD_ABOUT, IDC_ABOUT, "About"}}};

HINSTANCE ThisLibrary() { return GetModuleHandleA("sample_cpl.cpl"); }

INT_PTR CALLBACK OnPageMessage(HWND, UINT message, WPARAM, LPARAM) {
    return message == WM_INITDIALOG;
}

void ShowPage(HWND sheet, const char* title) {
    for (const Page& page : kPages) {
        const HWND window = FindWindowExA(sheet, nullptr, MAKEINTATOM(32770), page.title);
        ShowWindow(window, std::strcmp(page.title, title) == 0 ? SW_SHOW : SW_HIDE);
    }
}

void OpenSheet(HWND sheet, const char* title) {
    char caption[128] = "";
    LoadStringA(ThisLibrary(), IDS_CAPTION, caption, sizeof caption);
    SetWindowTextA(sheet, caption);
    for (const Page& page : kPages)
        CreateDialogParamA(ThisLibrary(), MAKEINTRESOURCEA(page.templateId), sheet, OnPageMessage,
                           0);
    ShowPage(sheet, title);
}

INT_PTR CALLBACK OnSheetMessage(HWND sheet, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        OpenSheet(sheet, reinterpret_cast<const char*>(lParam));
        return TRUE;
    }
    if (message != WM_COMMAND) return FALSE;
    const int id = LOWORD(wParam);
    if (id == IDOK || id == IDCANCEL) return EndDialog(sheet, id);
    for (const Page& page : kPages)
        if (page.buttonId == id) ShowPage(sheet, page.title);
    return TRUE;
}

bool IsZero(const CPLINFO& info) {
    return info.idIcon == 0 && info.idName == 0 && info.idInfo == 0 && info.lData == 0;
}

void KeepJournal(HWND owner, UINT message, LPARAM lParam1, LPARAM lParam2) {
    const char* path = std::getenv("SAMPLE_CPL_JOURNAL");
    std::FILE* journal = path ? std::fopen(path, "a") : nullptr;
    if (!journal) return;
    std::fprintf(journal, "%p %u %d", static_cast<void*>(owner), message,
                 static_cast<int>(lParam1));
    if (message == CPL_STARTWPARMSA)
        std::fprintf(journal, " %s", reinterpret_cast<const char*>(lParam2));
    if (message == CPL_INQUIRE && !IsZero(*reinterpret_cast<const CPLINFO*>(lParam2)))
        std::fputs(" !", journal);
    std::fputs("\n", journal);
    std::fclose(journal);
}

}  // namespace

extern "C" __attribute__((visibility("default"))) LONG APIENTRY CPlApplet(HWND owner, UINT message,
                                                                          LPARAM lParam1,
                                                                          LPARAM lParam2) {
    KeepJournal(owner, message, lParam1, lParam2);
    switch (message) {
        case CPL_INIT:
            return std::getenv("SAMPLE_CPL_REFUSES") == nullptr;
        case CPL_GETCOUNT:
            return 2;
        case CPL_INQUIRE: {
            auto* info = reinterpret_cast<CPLINFO*>(lParam2);
            info->idName = info->idInfo = IDS_CAPTION;
            return lParam1 != 0;
        }
        case CPL_STARTWPARMSA:
            return DialogBoxParamA(ThisLibrary(), MAKEINTRESOURCEA(IDD_SHEET), owner,
                                   OnSheetMessage, lParam2) != -1;
        default:
            return 0;
    }
}
