// The behaviours of the user half of the Win32 API that this system relies on: messages, windows,
// dialogs, menus, list views and the notification area. The tests use the API alone and run against
// the simulator and against Windows' own libraries.
#include <commctrl.h>
#include <shellapi.h>

#include "wine.h"

namespace {

using testing::ElementsAre, testing::UnorderedElementsAre;
using Results = std::vector<LRESULT>;

constexpr UINT kMark = WM_APP + 1;
constexpr int kList = 1000;

// What the dialog procedure of the tests does and has seen.
struct {
    std::function<void(HWND)> init;  // what it calls at WM_INITDIALOG
    bool setsFocus = false;          // what it returns then
    bool answers = false;            // what it returns for kMark and LVN_DELETEALLITEMS
    bool focusOnList = false;        // at the last command
    Results ends;                    // WM_DESTROY and WM_NCDESTROY
    Results deleted;                 // parameters of deleted rows
} g_procedure;

INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    const UINT code = message == WM_NOTIFY ? reinterpret_cast<NMHDR*>(lParam)->code : 0;
    if (message == WM_INITDIALOG && g_procedure.init) g_procedure.init(window);
    if (message == WM_INITDIALOG) return g_procedure.setsFocus;
    if (message == WM_DESTROY || message == WM_NCDESTROY) g_procedure.ends.push_back(message);
    if (message == WM_COMMAND || message == WM_TIMER) {
        g_procedure.focusOnList = GetFocus() == GetDlgItem(window, kList);
        if (g_procedure.init) EndDialog(window, LOWORD(wParam));
    }
    if (code == LVN_DELETEITEM)
        g_procedure.deleted.push_back(reinterpret_cast<NMLISTVIEW*>(lParam)->lParam);
    SetWindowLongPtrA(window, DWLP_MSGRESULT, 5);
    return (message == kMark || code == LVN_DELETEALLITEMS) && g_procedure.answers;
}

class UserContract : public testing::Test {
protected:
    void SetUp() override {
        const INITCOMMONCONTROLSEX controls{sizeof controls, ICC_LISTVIEW_CLASSES};
        ASSERT_TRUE(InitCommonControlsEx(&controls));
        g_procedure = {};
        m_dialog = NewDialog(nullptr);
        m_list = GetDlgItem(m_dialog, kList);
        Pump();
    }
    void TearDown() override { DestroyWindow(m_dialog); }

    static HWND NewDialog(HWND owner) {
        return CreateDialogParamA(nullptr, MAKEINTRESOURCEA(100), owner, Procedure, 0);
    }
    // Runs the modal dialog; `act` is called before it is shown. The id of a command or timer is
    // the result.
    static INT_PTR RunDialog(HWND owner, std::function<void(HWND)> act) {
        g_procedure.init = std::move(act);
        return DialogBoxParamA(nullptr, MAKEINTRESOURCEA(100), owner, Procedure, 0);
    }
    static void Pump() {
        for (MSG message; PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE);)
            DispatchMessageA(&message);
    }
    static BOOL Next(MSG& message) { return GetMessageA(&message, nullptr, 0, 0); }
    HWND Child(int id) const { return GetDlgItem(m_dialog, id); }
    LRESULT ToList(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
        return SendMessageA(m_list, message, wParam, lParam);
    }

    HWND m_dialog = nullptr;
    HWND m_list = nullptr;
};

TEST_F(UserContract, PostedMessagesComeBeforeTheQuitMessageAndThatBeforeTimers) {
    MSG message;
    ASSERT_EQ(SetTimer(m_dialog, 0xdeadbeef, 0, nullptr), 0xdeadbeefu);
    PostQuitMessage(7);
    ASSERT_TRUE(PostMessageA(m_dialog, kMark, 1, 0));
    ASSERT_TRUE(PeekMessageA(&message, m_dialog, kMark, kMark, PM_NOREMOVE));
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
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_WINDOW_HANDLE});
    EXPECT_GE(RegisterWindowMessageA("contract"), 0xC000u);
    EXPECT_EQ(RegisterWindowMessageA("contract"), RegisterWindowMessageA("CONTRACT"));
}

TEST_F(UserContract, TheQuitMessageEndsAModalDialogAndStaysForTheLoopOutside) {
    RunDialog(nullptr, [](HWND) { PostQuitMessage(9); });
    MSG message;
    while (Next(message)) DispatchMessageA(&message);
    EXPECT_EQ(message.wParam, 9u);
}

TEST_F(UserContract, AModalDialogDisablesItsOwnerAndGivesItTheFocusInTheEnd) {
    const auto hasFocus = [&] { return GetFocus() == m_dialog || IsChild(m_dialog, GetFocus()); };
    for (const bool setsFocus : {false, true}) {
        g_procedure.setsFocus = setsFocus;
        BOOL enabled = TRUE;
        const auto act = [&](HWND dialog) {
            enabled = IsWindowEnabled(m_dialog);
            SetFocus(GetDlgItem(dialog, IDNO));
            SetTimer(dialog, IDYES, 10, nullptr);  // so it ends after it is shown
        };
        EXPECT_EQ(RunDialog(m_dialog, act), IDYES);
        EXPECT_FALSE(enabled);
        EXPECT_EQ(g_procedure.focusOnList, setsFocus) << "or the first control has it";
        EXPECT_TRUE(IsWindowEnabled(m_dialog));
        for (int i = 0; i < 100 && !hasFocus(); ++i, Sleep(50)) Pump();
        EXPECT_TRUE(hasFocus());
    }
    SetFocus(nullptr);
    EnableWindow(m_dialog, FALSE);
    SetFocus(m_list);
    EXPECT_NE(GetFocus(), m_list) << "a window takes no focus within a disabled one";
}

TEST_F(UserContract, KeysAndTheCloseBoxBecomeCommands) {
    const struct {
        int focus;
        UINT message;
        WPARAM key;
        int command;
    } cases[] = {{kList, WM_KEYDOWN, VK_RETURN, IDYES},
                 {IDNO, WM_KEYDOWN, VK_RETURN, IDYES},  // SetFocus leaves the default button
                 {kList, WM_KEYDOWN, VK_ESCAPE, IDCANCEL},
                 {0, WM_CLOSE, 0, IDCANCEL},
                 {IDNO, BM_CLICK, 0, IDNO}};
    for (const auto& each : cases) {
        const auto act = [&](HWND dialog) {
            const HWND focus = each.focus ? GetDlgItem(dialog, each.focus) : dialog;
            SetFocus(focus);
            PostMessageA(focus, each.message, each.key, 0);
        };
        EXPECT_EQ(RunDialog(nullptr, act), each.command);
    }
    MSG escape{nullptr, WM_KEYDOWN, VK_ESCAPE, 0, 0, {0, 0}};
    EXPECT_FALSE(IsDialogMessageA(m_dialog, &escape)) << "a message to no window";
}

void CALLBACK PressOk(HWND, UINT, UINT_PTR timer, DWORD) {
    if (const HWND box = FindWindowA("#32770", "A box"))
        KillTimer(nullptr, timer), PostMessageA(box, WM_COMMAND, IDOK, 0);
}

TEST_F(UserContract, AMessageBoxRunsUntilItIsAnswered) {
    ASSERT_TRUE(SetTimer(nullptr, 0, 10, PressOk));
    EXPECT_EQ(MessageBoxA(m_dialog, "text", "A box", MB_OK | MB_ICONINFORMATION), IDOK);
    EXPECT_TRUE(IsWindowEnabled(m_dialog));
    EXPECT_EQ(FindWindowA("#32770", "A box"), nullptr);
}

TEST_F(UserContract, TheProcedureAnswersByTheMessageResultAndSeesItsEnd) {
    EXPECT_EQ(SendMessageA(m_dialog, kMark, 0, 0), 0);
    g_procedure.answers = true;
    EXPECT_EQ(SendMessageA(m_dialog, kMark, 0, 0), 5);
    const HWND owned = NewDialog(m_dialog);
    EXPECT_TRUE(DestroyWindow(m_dialog));
    EXPECT_FALSE(IsWindow(owned)) << "owned windows are destroyed with their owner";
    EXPECT_THAT(g_procedure.ends, ElementsAre(WM_DESTROY, WM_NCDESTROY, WM_DESTROY, WM_NCDESTROY));
}

LRESULT CALLBACK Subclass(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    const auto before = reinterpret_cast<WNDPROC>(GetWindowLongPtrA(window, GWLP_USERDATA));
    return message == kMark ? 8 : CallWindowProcA(before, window, message, wParam, lParam);
}

TEST_F(UserContract, WindowsAreFoundMovedShownAndSubclassed) {
    const auto find = [&](HWND after, const char* type, const char* text) {
        return FindWindowExA(m_dialog, after, type, text);
    };
    EXPECT_EQ(FindWindowA("#32770", "A dialog"), m_dialog);
    EXPECT_EQ(FindWindowA("no such class", nullptr), nullptr);
    EXPECT_EQ(find(nullptr, "SysListView32", nullptr), m_list);
    EXPECT_EQ(find(Child(IDYES), "button", nullptr), Child(IDNO));
    EXPECT_TRUE(SetDlgItemTextA(m_dialog, IDNO, "Never"));
    EXPECT_EQ(find(nullptr, "Button", "Never"), Child(IDNO));
    EXPECT_TRUE(SetWindowTextA(m_dialog, "Another title"));
    EXPECT_EQ(FindWindowA(nullptr, "Another title"), m_dialog);
    RECT before{}, after{};
    GetWindowRect(m_list, &before);
    POINT corner{before.left, before.top};
    EXPECT_TRUE(ScreenToClient(m_dialog, &corner));
    EXPECT_TRUE(MoveWindow(m_list, corner.x, corner.y + 3, 50, 20, FALSE));
    GetWindowRect(m_list, &after);
    EXPECT_THAT((Results{after.left, after.top, after.right, after.bottom}),
                ElementsAre(before.left, before.top + 3, before.left + 50, before.top + 23));
    EXPECT_THAT((Results{ShowWindow(m_dialog, SW_SHOW), ShowWindow(m_dialog, SW_HIDE)}),
                ElementsAre(FALSE, TRUE));
    EXPECT_THAT((Results{EnableWindow(m_list, FALSE), EnableWindow(m_list, TRUE)}),
                ElementsAre(FALSE, TRUE));
    const auto subclass = reinterpret_cast<LONG_PTR>(&Subclass);
    const LONG_PTR proc = GetWindowLongPtrA(m_list, GWLP_WNDPROC);
    EXPECT_EQ(SetWindowLongPtrA(m_list, GWLP_USERDATA, proc), 0);
    EXPECT_EQ(SetWindowLongPtrA(m_list, GWLP_WNDPROC, subclass), proc);
    EXPECT_THAT((Results{ToList(kMark), ToList(LVM_GETITEMCOUNT)}), ElementsAre(8, 0));
    EXPECT_EQ(SetWindowLongPtrA(m_list, GWLP_WNDPROC, proc), subclass);
}

int CALLBACK Descending(LPARAM left, LPARAM right, LPARAM sign) {
    return static_cast<int>((right - left) * sign);
}

class ListContract : public UserContract {
protected:
    void SetUp() override {
        UserContract::SetUp();
        LVCOLUMNA column{};
        column.mask = LVCF_WIDTH;
        for (column.cx = 0; column.cx < 2; ++column.cx)
            EXPECT_EQ(ToList(LVM_INSERTCOLUMNA, 5, reinterpret_cast<LPARAM>(&column)), column.cx);
        for (const int row : {0, 1, 2})
            EXPECT_EQ(Send(LVM_INSERTITEMA, LVIF_TEXT | LVIF_PARAM, 9, 0, "cell", row + 10), row);
    }
    LRESULT Send(UINT message, UINT mask, int row, int column, const char* text = nullptr,
                 LPARAM parameter = 0) {
        m_item.mask = mask;
        m_item.iItem = row;
        m_item.iSubItem = column;
        m_item.pszText = const_cast<char*>(text);
        m_item.lParam = parameter;
        m_item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
        return ToList(message, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&m_item));
    }
    LPARAM Parameter(int row) {
        return Send(LVM_GETITEMA, LVIF_PARAM, row, 0) ? m_item.lParam : -1;
    }
    std::string Text(int row, int column) {
        char text[6] = "";
        m_item.cchTextMax = 5;
        Send(LVM_GETITEMTEXTA, LVIF_TEXT, row, column, text);
        return text;
    }

    LVITEMA m_item{};
};

TEST_F(ListContract, RowsHaveCellsDataAndState) {
    // Windows documents the capacity as that of the buffer, and the text as one with a final NUL;
    // Wine leaves the NUL out when the text fills the buffer.
    const std::string cut = IsWine() ? "longe" : "long";
    const auto setText = [&](int row, int column) {
        return Send(LVM_SETITEMA, LVIF_TEXT, row, column, "longer");
    };
    EXPECT_THAT((Results{setText(1, 1), setText(3, 0), setText(0, 2)}), ElementsAre(1, 0, 0));
    EXPECT_EQ(Text(1, 1), cut);
    EXPECT_THAT((Results{Parameter(2), Parameter(3)}), ElementsAre(12, -1));
    EXPECT_TRUE(ToList(LVM_SORTITEMS, 1, reinterpret_cast<LPARAM>(&Descending)));
    EXPECT_THAT((Results{Parameter(0), Parameter(1), Parameter(2)}), ElementsAre(12, 11, 10));
    EXPECT_EQ(Text(1, 1), cut) << "the cells move with their row";
    for (const int row : {0, 1}) {
        m_item.state = LVIS_SELECTED | LVIS_FOCUSED;
        EXPECT_TRUE(Send(LVM_SETITEMSTATE, 0, row, 0));
    }
    for (const UINT row : {0, 1}) {
        Send(LVM_GETITEMA, LVIF_STATE, static_cast<int>(row), 0);
        EXPECT_EQ(m_item.state, row * (LVIS_SELECTED | LVIS_FOCUSED)) << "one row is selected";
    }
    ToList(LVM_SETEXTENDEDLISTVIEWSTYLE, 0, LVS_EX_FULLROWSELECT);
    EXPECT_THAT((Results{ToList(LVM_GETITEMCOUNT), ToList(LVM_ENSUREVISIBLE, 2),
                         ToList(LVM_GETEXTENDEDLISTVIEWSTYLE)}),
                ElementsAre(3, TRUE, LVS_EX_FULLROWSELECT));
    const auto width = [&](LPCSTR text) {
        return ToList(LVM_GETSTRINGWIDTHA, 0, reinterpret_cast<LPARAM>(text));
    };
    EXPECT_GT(width("ww"), width("w"));
}

TEST_F(ListContract, TheParentIsNotifiedOfEachDeletedRowUnlessItDeclines) {
    EXPECT_TRUE(ToList(LVM_DELETEALLITEMS));
    EXPECT_THAT(g_procedure.deleted, UnorderedElementsAre(10, 11, 12));
    for (const bool declines : {false, true}) {
        SetUp();
        g_procedure.answers = declines;
        DestroyWindow(m_dialog);
        EXPECT_EQ(g_procedure.deleted.size(), declines ? 0u : 3u);
    }
}

TEST_F(ListContract, TheHeaderHasTheColumns) {
    const auto header = reinterpret_cast<HWND>(ToList(LVM_GETHEADER));
    EXPECT_EQ(SendMessageA(header, HDM_GETITEMCOUNT, 0, 0), 2);
    EXPECT_TRUE(ToList(LVM_SETCOLUMNWIDTH, 1, 33));
    HDITEMA item{};
    const auto send = [&](UINT message, UINT mask, WPARAM column = 1) {
        item.mask = mask;
        return SendMessageA(header, message, column, reinterpret_cast<LPARAM>(&item));
    };
    EXPECT_TRUE(send(HDM_GETITEMA, HDI_WIDTH | HDI_FORMAT));
    EXPECT_EQ(item.cxy, 33);
    item.fmt |= HDF_SORTUP;
    EXPECT_TRUE(send(HDM_SETITEMA, HDI_FORMAT));
    item.fmt = 0;
    EXPECT_TRUE(send(HDM_GETITEMA, HDI_FORMAT));
    EXPECT_TRUE(item.fmt & HDF_SORTUP);
    EXPECT_FALSE(send(HDM_GETITEMA, HDI_WIDTH, 2));
}

TEST_F(UserContract, TheTrayKeepsOneIconForEachIdOfAWindow) {
    NOTIFYICONDATAA data{};
    data.cbSize = NOTIFYICONDATAA_V3_SIZE;
    data.hWnd = m_dialog;
    data.uFlags = NIF_ICON | NIF_TIP | NIF_MESSAGE | NIF_INFO;
    data.hIcon = LoadIconA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(100));
    std::fill(std::begin(data.szTip), std::end(data.szTip), 't');  // without a NUL
    Results results;
    for (const DWORD message : {NIM_MODIFY, NIM_DELETE, NIM_SETVERSION, NIM_ADD, NIM_ADD,
                                NIM_MODIFY, NIM_SETVERSION, NIM_DELETE, NIM_DELETE})
        results.push_back(Shell_NotifyIconA(message, &data));
    EXPECT_THAT(results, ElementsAre(0, 0, 0, 1, 0, 1, 1, 1, 0));
}

TEST_F(UserContract, ResourcesAreLoadedByNumber) {
    const HINSTANCE program = GetModuleHandleA(nullptr);
    const LPCSTR number = MAKEINTRESOURCEA(100), none = MAKEINTRESOURCEA(101);
    char text[5];
    EXPECT_EQ(LoadStringA(program, 16, text, sizeof text), 4) << "cut at the capacity";
    EXPECT_STREQ(text, "sixt");
    EXPECT_EQ(LoadStringA(program, 17, text, sizeof text), 0);
    EXPECT_EQ(LoadMenuA(program, none), nullptr);
    const HMENU menu = LoadMenuA(program, number), popup = GetSubMenu(menu, 0);
    EXPECT_EQ(GetSubMenu(menu, 1), nullptr);
    EXPECT_TRUE(SetMenuDefaultItem(popup, 1, FALSE));
    EXPECT_TRUE(DestroyMenu(menu));
    EXPECT_EQ(LoadIconA(program, none), nullptr);
    EXPECT_EQ(LoadIconA(program, number), LoadIconA(program, number));
    const HANDLE icon = LoadImageA(program, number, IMAGE_ICON, 16, 16, 0);
    EXPECT_TRUE(DestroyIcon(static_cast<HICON>(icon)));
    EXPECT_EQ(LoadImageA(program, none, IMAGE_BITMAP, 0, 0, 0), nullptr);
    const HCURSOR wait = LoadCursorA(nullptr, IDC_WAIT);
    EXPECT_EQ(SetCursor(SetCursor(wait)), wait);
    EXPECT_EQ(CreateDialogParamA(program, none, nullptr, Procedure, 0), nullptr);
    EXPECT_EQ(DialogBoxParamA(program, none, nullptr, Procedure, 0), -1);
}

TEST(Screen, HasOneMonitorAndDrawsIntoBitmaps) {
    const HMONITOR monitor = MonitorFromPoint({1, 1}, MONITOR_DEFAULTTONULL);
    EXPECT_EQ(MonitorFromPoint({-9999, 1}, MONITOR_DEFAULTTONULL), nullptr);
    EXPECT_EQ(MonitorFromPoint({-9999, 1}, MONITOR_DEFAULTTONEAREST), monitor);
    MONITORINFO info{sizeof info, {}, {}, 0};
    EXPECT_TRUE(GetMonitorInfoA(monitor, &info));
    EXPECT_EQ(info.rcMonitor.right, GetSystemMetrics(SM_CXSCREEN));
    UINT width = 0;
    EXPECT_TRUE(SystemParametersInfoA(SPI_GETMOUSEHOVERWIDTH, 0, &width, 0));
    EXPECT_GT(width, 0u);
    const HDC screen = GetDC(nullptr), canvas = CreateCompatibleDC(screen);
    const HBITMAP bitmap = CreateCompatibleBitmap(screen, 16, 15);
    const HGDIOBJ before = SelectObject(canvas, bitmap);
    const POINT corners[] = {{1, 1}, {9, 1}, {5, 5}};
    EXPECT_TRUE(FillRect(canvas, &info.rcMonitor, GetSysColorBrush(COLOR_BTNFACE)));
    EXPECT_TRUE(Polygon(canvas, corners, 3));
    EXPECT_EQ(SelectObject(canvas, before), bitmap);
    EXPECT_TRUE(DeleteDC(canvas) && DeleteObject(bitmap) && ReleaseDC(nullptr, screen));
}

}  // namespace
