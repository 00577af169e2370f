// The order of messages, the end of a modal dialog and the rows of a list view, as the system
// expects them of Win32. Written on the API alone, so that each platform is held to the same.
#include <windows.h>
#include <commctrl.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace {

constexpr UINT kMark = WM_APP + 1;

std::vector<LPARAM> g_deleted;  // the parameters of the rows that went

// A dialog that is given a number posts the quit message with it.
INT_PTR CALLBACK Procedure(HWND, UINT message, WPARAM, LPARAM lParam) {
    if (message == WM_INITDIALOG && lParam) PostQuitMessage(static_cast<int>(lParam));
    if (message == WM_NOTIFY && reinterpret_cast<NMHDR*>(lParam)->code == LVN_DELETEITEM)
        g_deleted.push_back(reinterpret_cast<NMLISTVIEW*>(lParam)->lParam);
    return FALSE;
}

class UserContract : public testing::Test {
protected:
    void SetUp() override {
        const INITCOMMONCONTROLSEX controls{sizeof controls, ICC_LISTVIEW_CLASSES};
        ASSERT_TRUE(InitCommonControlsEx(&controls));
        m_dialog = CreateDialogParamA(nullptr, MAKEINTRESOURCEA(100), nullptr, Procedure, 0);
        m_list = GetDlgItem(m_dialog, 1000);
        ASSERT_TRUE(m_list);
    }
    void TearDown() override { DestroyWindow(m_dialog); }

    static BOOL Next(MSG& message) { return GetMessageA(&message, nullptr, 0, 0); }

    HWND m_dialog = nullptr;
    HWND m_list = nullptr;
};

TEST_F(UserContract, PostedMessagesComeBeforeTheQuitMessageAndThatBeforeTimers) {
    MSG message;
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageA(&message);
    ASSERT_EQ(SetTimer(m_dialog, 0xdeadbeef, 0, nullptr), 0xdeadbeefu);
    PostQuitMessage(7);
    ASSERT_TRUE(PostMessageA(m_dialog, kMark, 1, 0));
    EXPECT_EQ(Next(message), TRUE);
    EXPECT_EQ(message.message, kMark);
    EXPECT_EQ(Next(message), FALSE);
    EXPECT_EQ(message.wParam, 7u);
    do {
        ASSERT_EQ(Next(message), TRUE);
    } while (message.hwnd != m_dialog || message.message != WM_TIMER);
    EXPECT_EQ(message.wParam, 0xdeadbeefu);
    EXPECT_TRUE(KillTimer(m_dialog, 0xdeadbeef));
    DestroyWindow(m_dialog);
    EXPECT_FALSE(PostMessageA(m_dialog, kMark, 0, 0));
}

TEST_F(UserContract, TheQuitMessageEndsAModalDialogAndStaysForTheLoopOutside) {
    DialogBoxParamA(nullptr, MAKEINTRESOURCEA(100), nullptr, Procedure, 9);
    MSG message;
    while (Next(message)) DispatchMessageA(&message);
    EXPECT_EQ(message.wParam, 9u);
}

TEST_F(UserContract, TheParentHearsOfEachRowThatGoesAlsoWhenTheControlIsDestroyed) {
    LVITEMA row{};
    row.mask = LVIF_PARAM;
    for (row.lParam = 10; row.lParam < 13; ++row.lParam)
        SendMessageA(m_list, LVM_INSERTITEMA, 0, reinterpret_cast<LPARAM>(&row));
    EXPECT_TRUE(SendMessageA(m_list, LVM_DELETEITEM, 1, 0));
    EXPECT_EQ(g_deleted, std::vector<LPARAM>{11});
    DestroyWindow(m_dialog);
    std::sort(g_deleted.begin(), g_deleted.end());
    EXPECT_EQ(g_deleted, (std::vector<LPARAM>{10, 11, 12}));
}

}  // namespace
