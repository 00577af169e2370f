// A stand-in for the agent's Control Panel applet library: one applet, whose sheet has the pages
// "Health" and "About".
//
// For tests two environment variables are looked at when a call comes: if SAMPLE_APPLET_REFUSES is
// set, CPL_INIT gives 0; SAMPLE_APPLET_JOURNAL names a file to which each call adds a line with its
// message number and, where there is one, the page asked for.
#include <windows.h>
#include <cpl.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "resource.h"

namespace {

struct Page {
    WORD templateId;
    int buttonId;
    const char* title;
};

constexpr std::array<Page, 2> kPages{
    {{IDD_HEALTH, IDC_HEALTH, "Health"}, {IDD_ABOUT, IDC_ABOUT, "About"}}};

HINSTANCE ThisLibrary() { return GetModuleHandleA("sample_applet.cpl"); }

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

void KeepJournal(UINT message, const char* page) {
    const char* path = std::getenv("SAMPLE_APPLET_JOURNAL");
    if (!path) return;
    if (std::FILE* journal = std::fopen(path, "a")) {
        std::fprintf(journal, page ? "%u %s\n" : "%u\n", message, page);
        std::fclose(journal);
    }
}

}  // namespace

extern "C" __attribute__((visibility("default"))) LONG APIENTRY CPlApplet(HWND owner, UINT message,
                                                                          LPARAM lParam1,
                                                                          LPARAM lParam2) {
    const bool opens = message == CPL_STARTWPARMSA;
    KeepJournal(message, opens ? reinterpret_cast<const char*>(lParam2) : nullptr);
    switch (message) {
        case CPL_INIT:
            return std::getenv("SAMPLE_APPLET_REFUSES") == nullptr;
        case CPL_GETCOUNT:
            return 1;
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
