// The common part of the dialogs of available, installed and failed updates: their template, their
// start sequence and their end.
#pragma once

#include <windows.h>

#include <string>

#include "frame/DialogImpl.h"
#include "frame/Reflection.h"
#include "frame/WinDataExchange.h"
#include "hlxCommand.h"
#include "resource.h"
#include "shared/StringTable.h"

// Strings of one dialog.
struct UpdateDialogTexts {
    UINT caption;
    UINT intro;
    UINT listLabel;
    UINT firstColumn;
};

// T derives from this and supplies
//   static constexpr UpdateDialogTexts kTexts
//   List()               the list control
//   FillList()           writes the rows
//   OnAnswer(id)         before the dialog ends with the button `id`
// and, where it has something to do there,
//   OnListFilled()       after the columns have been fitted
//   SetUpButtons()       at the end of the start, also when the texts could not be set
template <class T>
class CUpdateDialogImpl : public CDialogImpl<T>, public CWinDataExchange<T> {
public:
    static constexpr int IDD = IDD_UPDATES;

    BOOL ProcessWindowMessage(HWND, UINT message, WPARAM wParam, LPARAM lParam,
                              LRESULT& result) override {
        switch (message) {
            case WM_INITDIALOG:
                result = OnInitDialog();
                return TRUE;
            case WM_COMMAND:
                if (HIWORD(wParam) != 0 || !IsButton(LOWORD(wParam))) return FALSE;
                result = OnCloseCmd(LOWORD(wParam));
                return TRUE;
            default:
                return ReflectNotification(message, wParam, lParam, result);
        }
    }

protected:
    void OnListFilled() {}
    void SetUpButtons() {}

    // Puts intro and label into their controls. False if one of them could not be set.
    bool PutTexts() {
        return this->PutText(IDC_INTRO, m_strIntro) &&
               this->PutText(IDC_LIST_LABEL, m_strListLabel);
    }

    // OnAnswer of a dialog in which Yes requests the download from the daemon.
    static void RequestDownloadIfConfirmed(WORD id) {
        if (id == IDOK || id == IDYES) hlx_requestDownload();
    }

    std::string m_strIntro;
    std::string m_strListLabel;

private:
    static bool IsButton(WORD id) {
        return id == IDYES || id == IDOK || id == IDNO || id == IDCANCEL;
    }

    T& Self() { return static_cast<T&>(*this); }

    // 0: the system sets no focus.
    LRESULT OnInitDialog() {
        if (LoadText(T::kTexts.caption, m_strIntro)) this->SetWindowText(m_strIntro.c_str());
        LoadText(T::kTexts.intro, m_strIntro);
        LoadText(T::kTexts.listLabel, m_strListLabel);
        if (PutTexts()) StartList();
        Self().SetUpButtons();
        return 0;
    }

    void StartList() {
        auto& list = Self().List();
        if (!list.m_hWnd) list.SubclassWindow(this->GetDlgItem(IDC_RESULT_LIST));
        const CRedrawPause pause(list);
        list.SetupColumns(T::kTexts.firstColumn);
        list.DeleteAllItems();
        Self().FillList();
        list.FitColumns();
        Self().OnListFilled();
    }

    LRESULT OnCloseCmd(WORD id) {
        Self().OnAnswer(id);
        this->EndDialog(id);
        return 0;
    }
};
