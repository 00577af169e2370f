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
    std::vector<std::pair<int, LPARAM>> deletedRows;
    std::vector<UINT> commands;
};
Script* g_script = nullptr;

INT_PTR CALLBACK Procedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_COMMAND) g_script->commands.push_back(LOWORD(wParam));
    if (message == WM_NOTIFY && reinterpret_cast<NMHDR*>(lParam)->code == LVN_DELETEITEM) {
        const auto* notice = reinterpret_cast<NMLISTVIEW*>(lParam);
        g_script->deletedRows.emplace_back(notice->iItem, notice->lParam);
    }
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
        return CreateDialogParamA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(id), owner, Procedure,
                                  0);
    }
    INT_PTR RunModal() {
        return DialogBoxParamA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(100), nullptr, Procedure,
                               0);
    }
    void Drain() {
        MSG message;
        while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE))
            if (!IsDialogMessageA(m_dialog, &message)) DispatchMessageA(&message);
    }
    LRESULT ToList(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
        return SendMessageA(m_list, message, wParam, lParam);
    }
    LRESULT ToList(UINT message, WPARAM wParam, void* record) {
        return ToList(message, wParam, reinterpret_cast<LPARAM>(record));
    }
    void AddColumn(int index, int width) {
        LVCOLUMNA column{};
        column.mask = LVCF_FMT | LVCF_WIDTH | LVCF_TEXT | LVCF_SUBITEM;
        column.cx = width;
        column.pszText = const_cast<LPSTR>("Title");
        column.iSubItem = index;
        EXPECT_EQ(ToList(LVM_INSERTCOLUMNA, static_cast<WPARAM>(index), &column), index);
    }
    LRESULT AddRow(int index, const char* text, LPARAM parameter) {
        LVITEMA item{};
        item.mask = LVIF_TEXT | LVIF_PARAM;
        item.iItem = index;
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
    EXPECT_EQ(GetMessageA(&message, nullptr, 0, 0), TRUE);
    EXPECT_EQ(message.message, kMark);
    EXPECT_EQ(GetMessageA(&message, nullptr, 0, 0), FALSE);
    EXPECT_EQ(message.wParam, 7u);
    do {
        ASSERT_EQ(GetMessageA(&message, nullptr, 0, 0), TRUE);
    } while (message.hwnd != m_dialog || message.message != WM_TIMER);
    EXPECT_EQ(message.wParam, 0xdeadbeefu);
    EXPECT_TRUE(KillTimer(m_dialog, 0xdeadbeef));
    EXPECT_FALSE(KillTimer(m_dialog, 0xdeadbeef));
}

TEST_F(UserContract, ADeadWindowTakesNoMessages) {
    DestroyWindow(m_dialog);
    EXPECT_FALSE(IsWindow(m_dialog));
    EXPECT_FALSE(PostMessageA(m_dialog, kMark, 0, 0));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_WINDOW_HANDLE));
}

TEST_F(UserContract, RegisteredMessagesHaveOneNumberForAName) {
    const UINT first = RegisterWindowMessageA("user_contract_first");
    EXPECT_GE(first, 0xC000u);
    EXPECT_EQ(RegisterWindowMessageA("user_contract_first"), first);
    EXPECT_NE(RegisterWindowMessageA("user_contract_second"), first);
}

TEST_F(UserContract, WindowsAreFoundByClassAndCaption) {
    const HWND page = Make(m_dialog, 101);
    ASSERT_TRUE(page);
    EXPECT_EQ(FindWindowA(MAKEINTATOM(32770), "A dialog"), m_dialog);
    EXPECT_EQ(FindWindowExA(m_dialog, nullptr, MAKEINTATOM(32770), "A page"), page);
    EXPECT_EQ(FindWindowExA(m_dialog, nullptr, "sysLISTview32", nullptr), m_list);
    EXPECT_EQ(FindWindowA(MAKEINTATOM(32770), "A page"), nullptr);
    EXPECT_TRUE(GetDlgItem(page, 200));
    EXPECT_TRUE(SetDlgItemTextA(m_dialog, 65535, "new"));
    char text[3];
    EXPECT_EQ(GetDlgItemTextA(m_dialog, 65535, text, sizeof text), 2u);
    EXPECT_STREQ(text, "ne");
    EXPECT_FALSE(SetDlgItemTextA(m_dialog, 77, "nobody"));
}

TEST_F(UserContract, TheCloseBoxAndTheKeyboardBecomeCommands) {
    const HWND yes = GetDlgItem(m_dialog, IDYES);
    PostMessageA(m_dialog, WM_CLOSE, 0, 0);
    Drain();
    PostMessageA(m_dialog, WM_KEYDOWN, VK_ESCAPE, 0);
    Drain();
    PostMessageA(m_dialog, WM_KEYDOWN, VK_RETURN, 0);
    Drain();
    SendMessageA(yes, BM_CLICK, 0, 0);
    EXPECT_EQ(m_script.commands, (std::vector<UINT>{IDCANCEL, IDCANCEL, IDYES, IDYES}));
    MSG foreign{};
    EXPECT_FALSE(IsDialogMessageA(m_dialog, &foreign));
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
    BOOL more = TRUE;
    while ((more = GetMessageA(&message, nullptr, 0, 0)) != 0) DispatchMessageA(&message);
    EXPECT_EQ(message.wParam, 9u);
}

TEST_F(UserContract, ListsKeepCopiesOfTheirTextsAndCutWhatTheyHandOut) {
    AddColumn(0, 50);
    AddColumn(1, 60);
    std::string text = "first";
    EXPECT_EQ(AddRow(0, text.c_str(), 11), 0);
    text = "gone!";
    EXPECT_EQ(AddRow(99, "behind", 12), 1);
    LVITEMA cell{};
    cell.mask = LVIF_TEXT;
    cell.iSubItem = 1;
    cell.pszText = const_cast<LPSTR>("second cell");
    EXPECT_TRUE(ToList(LVM_SETITEMA, 0, &cell));
    cell.iItem = 5;
    EXPECT_FALSE(ToList(LVM_SETITEMA, 0, &cell));
    EXPECT_EQ(Cell(0, 0), "first");
    EXPECT_EQ(Cell(0, 1, 7).substr(0, 6), "second");
    EXPECT_EQ(Cell(1, 1), "");
    EXPECT_TRUE(ToList(LVM_SETCOLUMNWIDTH, 1, MAKELPARAM(75, 0)));
    EXPECT_EQ(ToList(LVM_GETCOLUMNWIDTH, 1), 75);
    const auto header = reinterpret_cast<HWND>(ToList(LVM_GETHEADER));
    EXPECT_EQ(SendMessageA(header, HDM_GETITEMCOUNT, 0, 0), 2);
    HDITEMA item{};
    item.mask = HDI_FORMAT;
    ASSERT_TRUE(SendMessageA(header, HDM_GETITEMA, 1, reinterpret_cast<LPARAM>(&item)));
    item.fmt |= HDF_SORTDOWN;
    ASSERT_TRUE(SendMessageA(header, HDM_SETITEMA, 1, reinterpret_cast<LPARAM>(&item)));
    item.fmt = 0;
    SendMessageA(header, HDM_GETITEMA, 1, reinterpret_cast<LPARAM>(&item));
    EXPECT_EQ(item.fmt & (HDF_SORTDOWN | HDF_SORTUP), HDF_SORTDOWN);
    EXPECT_FALSE(SendMessageA(header, HDM_GETITEMA, 2, reinterpret_cast<LPARAM>(&item)));
}

TEST_F(UserContract, OneRowIsSelectedAndOneHasTheFocus) {
    AddColumn(0, 50);
    for (int row = 0; row < 3; ++row) AddRow(row, "row", row);
    for (const WPARAM row : {0u, 2u}) {
        LVITEMA item{};
        item.state = item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
        EXPECT_TRUE(ToList(LVM_SETITEMSTATE, row, &item));
    }
    EXPECT_EQ(ToList(LVM_GETITEMSTATE, 0, LPARAM{LVIS_SELECTED | LVIS_FOCUSED}), 0);
    EXPECT_EQ(ToList(LVM_GETITEMSTATE, 2, LPARAM{LVIS_SELECTED | LVIS_FOCUSED}), 3);
    EXPECT_EQ(ToList(LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LPARAM{LVNI_SELECTED}), 2);
    EXPECT_FALSE(ToList(LVM_ENSUREVISIBLE, 3));
}

TEST_F(UserContract, SortingGoesByTheRowsParameters) {
    AddColumn(0, 50);
    for (const LPARAM value : {20, 30, 10}) AddRow(99, std::to_string(value).c_str(), value);
    EXPECT_TRUE(ToList(LVM_SORTITEMS, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&BySign)));
    EXPECT_EQ(Cell(0, 0) + Cell(1, 0) + Cell(2, 0), "302010");
}

TEST_F(UserContract, TheParentHearsOfEachRowThatGoesAlsoWhenTheControlIsDestroyed) {
    AddColumn(0, 50);
    for (int row = 0; row < 3; ++row) AddRow(row, "row", 10 + row);
    EXPECT_TRUE(ToList(LVM_DELETEITEM, 1));
    EXPECT_EQ(m_script.deletedRows, (std::vector<std::pair<int, LPARAM>>{{1, 11}}));
    DestroyWindow(m_dialog);
    std::vector<LPARAM> gone;
    for (const auto& [row, parameter] : m_script.deletedRows) gone.push_back(parameter);
    std::sort(gone.begin(), gone.end());
    EXPECT_EQ(gone, (std::vector<LPARAM>{10, 11, 12}));
}

TEST_F(UserContract, StringsAreCutAtTheCapacityAndMissingOnesGiveNothing) {
    const HINSTANCE self = GetModuleHandleA(nullptr);
    char text[32] = "kept";
    EXPECT_EQ(LoadStringA(self, 129, text, sizeof text), 0);
    EXPECT_EQ(LoadStringA(self, 9999, text, sizeof text), 0);
    EXPECT_EQ(LoadStringA(self, 128, text, sizeof text), 16);
    EXPECT_STREQ(text, "First of a block");
    EXPECT_EQ(LoadStringA(self, 143, text, 5), 4);
    EXPECT_STREQ(text, "Last");
}

// An arrow head as a header draws it: filled and outlined in one color on another.
TEST_F(UserContract, PolygonsAreFilledWithinTheirBitmap) {
    constexpr RECT kArea{0, 0, 16, 15};
    constexpr POINT kCorners[] = {{7, 4}, {2, 9}, {12, 9}};
    const HDC screen = GetDC(nullptr);
    const HDC canvas = CreateCompatibleDC(screen);
    const HBITMAP bitmap = CreateCompatibleBitmap(screen, kArea.right, kArea.bottom);
    const HPEN pen = CreatePen(PS_SOLID, 0, GetSysColor(COLOR_BTNSHADOW));
    const HGDIOBJ before = SelectObject(canvas, bitmap);
    FillRect(canvas, &kArea, GetSysColorBrush(COLOR_BTNFACE));
    SelectObject(canvas, GetSysColorBrush(COLOR_BTNSHADOW));
    const HGDIOBJ oldPen = SelectObject(canvas, pen);
    EXPECT_TRUE(Polygon(canvas, kCorners, 3));
    for (const POINT inside : {POINT{7, 4}, {7, 6}, {2, 9}, {12, 9}, {7, 9}})
        EXPECT_EQ(GetPixel(canvas, inside.x, inside.y), GetSysColor(COLOR_BTNSHADOW));
    for (const POINT outside : {POINT{0, 0}, {7, 3}, {2, 6}, {12, 6}, {7, 10}})
        EXPECT_EQ(GetPixel(canvas, outside.x, outside.y), GetSysColor(COLOR_BTNFACE));
    SelectObject(canvas, oldPen);
    SelectObject(canvas, before);
    EXPECT_TRUE(DeleteObject(pen));
    EXPECT_TRUE(DeleteObject(bitmap));
    DeleteDC(canvas);
    ReleaseDC(nullptr, screen);
}

TEST_F(UserContract, MenusComeWithTheirPopups) {
    const HMENU menu = LoadMenuA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(100));
    ASSERT_TRUE(menu);
    const HMENU popup = GetSubMenu(menu, 0);
    ASSERT_TRUE(popup);
    EXPECT_EQ(GetSubMenu(menu, 1), nullptr);
    EXPECT_EQ(GetMenuItemCount(popup), 2);
    EXPECT_EQ(GetMenuItemID(popup, 1), 502u);
    char text[32];
    EXPECT_EQ(GetMenuStringA(popup, 501, text, sizeof text, MF_BYCOMMAND), 6);
    EXPECT_STREQ(text, "&First");
    EXPECT_FALSE(SetMenuDefaultItem(popup, 77, FALSE));
    EXPECT_TRUE(SetMenuDefaultItem(popup, 502, FALSE));
    EXPECT_EQ(GetMenuDefaultItem(popup, FALSE, 0), 502u);
    EXPECT_TRUE(DestroyMenu(popup));
    EXPECT_TRUE(DestroyMenu(menu));
    EXPECT_FALSE(LoadMenuA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(101)));
}

}  // namespace
