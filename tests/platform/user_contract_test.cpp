// The order of messages, the dialog manager, the list view and the texts of a module, as the system
// expects them of Win32. Written on the API alone, so that each platform is held to the same.
#include <windows.h>
#include <commctrl.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr UINT kMark = WM_APP + 1;

// What the dialog under test does with its messages; most tests only note them.
struct Script {
    std::function<INT_PTR(HWND, UINT, WPARAM, LPARAM)> react = [](auto...) { return FALSE; };
    std::vector<LPARAM> deleted;  // the parameters of the rows that went
    std::vector<UINT> commands;
};
Script* g_script = nullptr;

INT_PTR CALLBACK Procedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_COMMAND) g_script->commands.push_back(LOWORD(wParam));
    if (message == WM_NOTIFY && reinterpret_cast<NMHDR*>(lParam)->code == LVN_DELETEITEM)
        g_script->deleted.push_back(reinterpret_cast<NMLISTVIEW*>(lParam)->lParam);
    return g_script->react(dialog, message, wParam, lParam);
}

int CALLBACK BySign(LPARAM left, LPARAM right, LPARAM sign) {
    return static_cast<int>((left - right) * sign);
}

class UserContract : public testing::Test {
protected:
    void SetUp() override {
        g_script = &m_script;
        const INITCOMMONCONTROLSEX controls{sizeof controls, ICC_LISTVIEW_CLASSES};
        ASSERT_TRUE(InitCommonControlsEx(&controls));
        m_dialog = Make(nullptr, 100);
        ASSERT_TRUE(m_dialog);
        m_list = GetDlgItem(m_dialog, 1000);
    }
    void TearDown() override { DestroyWindow(m_dialog); }

    static HWND Make(HWND owner, WORD id) {
        return CreateDialogParamA(nullptr, MAKEINTRESOURCEA(id), owner, Procedure, 0);
    }
    static INT_PTR RunModal() {
        return DialogBoxParamA(nullptr, MAKEINTRESOURCEA(100), nullptr, Procedure, 0);
    }
    static BOOL Next(MSG& message) { return GetMessageA(&message, nullptr, 0, 0); }
    void Drain() {
        MSG message;
        while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE))
            if (!IsDialogMessageA(m_dialog, &message)) DispatchMessageA(&message);
    }
    LRESULT ToList(UINT message, WPARAM wParam, LPARAM lParam = 0) {
        return SendMessageA(m_list, message, wParam, lParam);
    }
    LRESULT ToList(UINT message, WPARAM wParam, void* record) {
        return ToList(message, wParam, reinterpret_cast<LPARAM>(record));
    }
    void AddColumns(int count) {
        for (LVCOLUMNA column{}; column.iSubItem < count; ++column.iSubItem) {
            column.mask = LVCF_SUBITEM;
            ToList(LVM_INSERTCOLUMNA, static_cast<WPARAM>(column.iSubItem), &column);
        }
    }
    LRESULT AddRow(const char* text, LPARAM parameter) {
        LVITEMA item{};
        item.mask = LVIF_TEXT | LVIF_PARAM;
        item.iItem = 99;
        item.pszText = const_cast<LPSTR>(text);
        item.lParam = parameter;
        return ToList(LVM_INSERTITEMA, 0, &item);
    }
    std::string Cell(int row, int column, int capacity = 64) {
        char text[64] = {};
        LVITEMA item{};
        item.iSubItem = column;
        item.pszText = text;
        item.cchTextMax = capacity;
        ToList(LVM_GETITEMTEXTA, static_cast<WPARAM>(row), &item);
        return text;
    }

    Script m_script;
    HWND m_dialog = nullptr;
    HWND m_list = nullptr;
};

TEST_F(UserContract, PostedMessagesComeBeforeTheQuitMessageAndThatBeforeTimers) {
    Drain();
    ASSERT_EQ(SetTimer(m_dialog, 0xdeadbeef, 0, nullptr), 0xdeadbeefu);
    PostQuitMessage(7);
    ASSERT_TRUE(PostMessageA(m_dialog, kMark, 1, 0));
    MSG message;
    EXPECT_EQ(Next(message), TRUE);
    EXPECT_EQ(message.message, kMark);
    EXPECT_EQ(Next(message), FALSE);
    EXPECT_EQ(message.wParam, 7u);
    do {
        ASSERT_EQ(Next(message), TRUE);
    } while (message.hwnd != m_dialog || message.message != WM_TIMER);
    EXPECT_EQ(message.wParam, 0xdeadbeefu);
    EXPECT_TRUE(KillTimer(m_dialog, 0xdeadbeef));
    EXPECT_FALSE(KillTimer(m_dialog, 0xdeadbeef));
    DestroyWindow(m_dialog);
    EXPECT_FALSE(PostMessageA(m_dialog, kMark, 0, 0));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_WINDOW_HANDLE));
}

TEST_F(UserContract, TheCloseBoxAndTheKeyboardBecomeCommands) {
    for (const auto& [message, key] :
         {std::pair{WM_CLOSE, 0}, {WM_KEYDOWN, VK_ESCAPE}, {WM_KEYDOWN, VK_RETURN}}) {
        PostMessageA(m_dialog, message, static_cast<WPARAM>(key), 0);
        Drain();
    }
    SendMessageA(GetDlgItem(m_dialog, IDYES), BM_CLICK, 0, 0);
    EXPECT_EQ(m_script.commands, (std::vector<UINT>{IDCANCEL, IDCANCEL, IDYES, IDYES}));
}

// The owner's messages go on being delivered while a dialog runs; a dialog ended in one of them
// gives its result.
TEST_F(UserContract, AModalDialogServesAllWindowsUntilItEnds) {
    HWND inner = nullptr;
    m_script.react = [&](HWND dialog, UINT message, WPARAM, LPARAM) -> INT_PTR {
        if (message == WM_INITDIALOG) {
            inner = dialog;
            PostMessageA(m_dialog, kMark, 0, 0);
            return TRUE;
        }
        if (message != kMark) return FALSE;
        EXPECT_EQ(dialog, m_dialog);
        return EndDialog(inner, 42);
    };
    EXPECT_EQ(RunModal(), 42);
    EXPECT_FALSE(IsWindow(inner));
}

TEST_F(UserContract, TheQuitMessageEndsAModalDialogAndStaysForTheLoopOutside) {
    m_script.react = [](HWND, UINT message, WPARAM, LPARAM) -> INT_PTR {
        if (message == WM_INITDIALOG) PostQuitMessage(9);
        return FALSE;
    };
    RunModal();
    MSG message;
    while (Next(message)) DispatchMessageA(&message);
    EXPECT_EQ(message.wParam, 9u);
}

TEST_F(UserContract, RowsAreSelectedOneAtATimeAndSortedByTheirParameters) {
    AddColumns(1);
    for (const LPARAM value : {20, 30, 10}) AddRow(std::to_string(value).c_str(), value);
    constexpr LPARAM kBoth = LVIS_SELECTED | LVIS_FOCUSED;
    for (const WPARAM row : {0u, 2u}) {
        LVITEMA item{};
        item.state = item.stateMask = UINT{kBoth};
        EXPECT_TRUE(ToList(LVM_SETITEMSTATE, row, &item));
    }
    EXPECT_EQ(ToList(LVM_GETITEMSTATE, 0, kBoth), 0);
    EXPECT_EQ(ToList(LVM_GETITEMSTATE, 2, kBoth), kBoth);
    EXPECT_TRUE(ToList(LVM_SORTITEMS, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&BySign)));
    EXPECT_EQ(Cell(0, 0) + Cell(1, 0) + Cell(2, 0), "302010");
    EXPECT_EQ(ToList(LVM_GETITEMSTATE, 2, kBoth), kBoth) << "the state goes with its row";
}

TEST_F(UserContract, TheParentHearsOfEachRowThatGoesAlsoWhenTheControlIsDestroyed) {
    AddColumns(1);
    for (const LPARAM parameter : {10, 11, 12}) AddRow("row", parameter);
    EXPECT_TRUE(ToList(LVM_DELETEITEM, 1));
    EXPECT_EQ(m_script.deleted, std::vector<LPARAM>{11});
    DestroyWindow(m_dialog);
    std::sort(m_script.deleted.begin(), m_script.deleted.end());
    EXPECT_EQ(m_script.deleted, (std::vector<LPARAM>{10, 11, 12}));
}

}  // namespace
