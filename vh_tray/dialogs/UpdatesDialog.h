// The dialog of available updates: the update on offer; Yes requests the download.
#pragma once

#include "dialogs/FittedColumns.h"
#include "dialogs/UpdateDialogImpl.h"
#include "frame/WindowImpl.h"

struct CListViewCtlTraits {
    static constexpr DWORD kStyle = WS_CHILD | WS_VISIBLE | LVS_REPORT | LVS_SHOWSELALWAYS;
    static constexpr DWORD kExStyle = WS_EX_CLIENTEDGE;
    static constexpr DWORD kExListStyle = LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER;
};

// An object that a row of the list may own through its item data.
struct CRowObject {
    virtual ~CRowObject() = default;
};

// Name and version.
class CUpdateListViewCtl
    : public CWindowImpl<CUpdateListViewCtl, CListViewCtrlT<CWindow>, CListViewCtlTraits>,
      public CFittedColumns {
public:
    CUpdateListViewCtl() : CFittedColumns(static_cast<CListViewCtrlT<CWindow>&>(*this)) {}
    // Not inline: with -flto, GCC names the copies of an inline one differently, and the link
    // fails.
    ~CUpdateListViewCtl() override;

    BOOL ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                              LRESULT& result) override;

    // Also sets the extended list style of the class.
    void SetupColumns(UINT firstString);
};

class CUpdatesDialog : public CUpdateDialogImpl<CUpdatesDialog> {
    friend class CUpdateDialogImpl<CUpdatesDialog>;

    static constexpr UpdateDialogTexts kTexts{IDS_AVAILABLE_CAPTION, IDS_AVAILABLE_INTRO,
                                              IDS_AVAILABLE_LABEL, IDS_AVAILABLE_COLUMNS};

    auto& List() { return m_listUpdates; }
    void FillList();
    void OnAnswer(WORD id) { RequestDownloadIfConfirmed(id); }

    CUpdateListViewCtl m_listUpdates;
};
