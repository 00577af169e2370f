// The looks and the hands of the simulated desktop, on a small program with an icon, a menu,
// dialogs and boxes that nest; and the refusals that tests order.
#include <windows.h>
#include <commctrl.h>
#include <shellapi.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "desktop/desktop.h"
#include "desktop/session.h"
#include "machine/clock.h"
#include "machine/faults.h"

using namespace desktop;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

constexpr UINT kCallback = WM_APP + 7;
constexpr UINT kIcon = 9;
constexpr UINT_PTR kTimer = 0xdeadbeef;

const auto kSelf = static_cast<HINSTANCE>(nullptr);

void FillList(HWND dialog) {
    const HWND list = GetDlgItem(dialog, 1000);
    LVCOLUMNA column{};
    column.mask = LVCF_WIDTH | LVCF_TEXT;
    column.cx = 40;
    column.pszText = const_cast<LPSTR>("Name");
    SendMessageA(list, LVM_INSERTCOLUMNA, 0, reinterpret_cast<LPARAM>(&column));
    LVITEMA item{};
    item.mask = LVIF_TEXT;
    item.pszText = const_cast<LPSTR>("one");
    SendMessageA(list, LVM_INSERTITEMA, 0, reinterpret_cast<LPARAM>(&item));
}

INT_PTR CALLBACK InnerProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM) {
    if (message == WM_INITDIALOG) FillList(dialog);
    if (message == WM_COMMAND) EndDialog(dialog, LOWORD(wParam));
    return FALSE;
}

NOTIFYICONDATAA IconRecord(HWND window) {
    NOTIFYICONDATAA record{};
    record.cbSize = NOTIFYICONDATAA_V3_SIZE;
    record.hWnd = window;
    record.uID = kIcon;
    record.uFlags = NIF_MESSAGE | NIF_TIP | NIF_INFO;
    record.uCallbackMessage = kCallback;
    std::strcpy(record.szTip, "tip");
    std::strcpy(record.szInfoTitle, "title");
    std::strcpy(record.szInfo, "balloon");
    return record;
}

void OpenMenuFor(HWND window) {
    POINT point;
    GetCursorPos(&point);
    const HMENU menu = LoadMenuA(kSelf, MAKEINTRESOURCEA(100));
    SetMenuDefaultItem(GetSubMenu(menu, 0), 502, FALSE);
    TrackPopupMenu(GetSubMenu(menu, 0), TPM_RIGHTBUTTON, point.x, point.y, 0, window, nullptr);
    DestroyMenu(menu);
}

// Hidden. Its icon opens a dialog, a menu or, from the menu, a box; the timer puts the icon up.
INT_PTR CALLBACK MainProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_TIMER && wParam == kTimer) {
        KillTimer(dialog, kTimer);
        NOTIFYICONDATAA record = IconRecord(dialog);
        Shell_NotifyIconA(NIM_ADD, &record);
    } else if (message == kCallback && lParam == WM_LBUTTONDBLCLK) {
        DialogBoxParamA(kSelf, MAKEINTRESOURCEA(100), dialog, InnerProcedure, 0);
    } else if (message == kCallback && lParam == WM_RBUTTONUP) {
        OpenMenuFor(dialog);
    } else if (message == WM_COMMAND && LOWORD(wParam) == 502) {
        MessageBoxA(dialog, "text", "caption", MB_ICONEXCLAMATION | MB_TOPMOST);
        ShellExecuteA(dialog, "open", "http://page/", nullptr, nullptr, SW_SHOWNORMAL);
    } else if (message == WM_COMMAND && LOWORD(wParam) == IDCANCEL) {
        DestroyWindow(dialog);
        PostQuitMessage(5);
    }
    return FALSE;
}

int Program() {
    const HWND window = CreateDialogParamA(kSelf, MAKEINTRESOURCEA(100), nullptr, MainProcedure, 0);
    SetTimer(window, kTimer, 0, nullptr);
    MSG message;
    while (GetMessageA(&message, nullptr, 0, 0)) DispatchMessageA(&message);
    return static_cast<int>(message.wParam);
}

class DesktopHands : public testing::Test {
protected:
    struct HeldClock {
        HeldClock() { machine::Clock::Hold(machine::kUnixEpoch); }
        ~HeldClock() {
            machine::Clock::Release();
            machine::ClearFaults();
        }
    };

    void StartTimer() { Advance(10ms); }

    HeldClock m_clock;
    Session m_session{Program};
};

TEST_F(DesktopHands, TheTimerFiresOnlyWhenTimeMovesOn) {
    EXPECT_THAT(Icons(), IsEmpty());
    Advance(9ms);
    EXPECT_THAT(Icons(), IsEmpty());
    Advance(1ms);
    const auto icon = FindIcon(kIcon);
    ASSERT_TRUE(icon);
    EXPECT_EQ(icon->tip, "tip");
    EXPECT_EQ(icon->balloonText, "balloon");
    EXPECT_EQ(icon->balloons, 1);
}

TEST_F(DesktopHands, AHandThatFindsNothingSaysSo) {
    EXPECT_FALSE(DoubleClick(kIcon));
    EXPECT_FALSE(Choose("First"));
    EXPECT_FALSE(DismissMenu());
    EXPECT_FALSE(Press("Yes"));
    EXPECT_FALSE(CloseWindow());
    StartTimer();
    EXPECT_FALSE(Click(kIcon + 1));
    ASSERT_TRUE(DoubleClick(kIcon));
    EXPECT_FALSE(Press("Maybe"));
    EXPECT_FALSE(ClickHeader(1));
}

TEST_F(DesktopHands, ADialogShowsItsControlsAndTakesKeys) {
    StartTimer();
    ASSERT_TRUE(DoubleClick(kIcon));
    const auto dialog = FindDialog("A dialog");
    ASSERT_TRUE(dialog);
    const Control* yes = dialog->Find(IDYES);
    ASSERT_TRUE(yes);
    EXPECT_TRUE(yes->visible && yes->enabled && yes->isDefault);
    EXPECT_EQ(yes->place.left, 6);
    EXPECT_EQ(yes->place.right, 66);
    const List* list = dialog->FirstList();
    ASSERT_TRUE(list);
    EXPECT_EQ(list->columns.at(0).title, "Name");
    EXPECT_THAT(list->rows, ElementsAre(ElementsAre("one")));
    EXPECT_TRUE(ClickHeader(0));
    EXPECT_TRUE(PressKey(VK_RETURN));
    EXPECT_THAT(Dialogs(), IsEmpty());
    EXPECT_EQ(Journal().back(), (Event{EventKind::kDialogClosed, IDYES, "A dialog", ""}));
}

TEST_F(DesktopHands, BoxesMenusAndDialogsNest) {
    StartTimer();
    MovePointer(3, 4);
    ASSERT_TRUE(DoubleClick(kIcon));
    ASSERT_TRUE(RightClick(kIcon));
    const auto menu = OpenMenu();
    ASSERT_TRUE(menu);
    EXPECT_EQ(menu->place.x, 3);
    EXPECT_EQ(menu->items.at(1).text, "Salt & pepper");
    EXPECT_TRUE(menu->items.at(1).isDefault);
    ASSERT_TRUE(RightClick(kIcon));  // closes the menu and opens another one
    ASSERT_TRUE(Choose("Salt & pepper"));
    EXPECT_FALSE(OpenMenu());
    const auto boxes = Boxes();
    ASSERT_THAT(boxes, SizeIs(1));
    EXPECT_EQ(boxes[0].icon, static_cast<UINT>(MB_ICONEXCLAMATION));
    EXPECT_TRUE(boxes[0].topmost);
    EXPECT_THAT(boxes[0].buttons, ElementsAre("OK"));
    EXPECT_TRUE(Press("No", FindDialog("A dialog")->window));
    EXPECT_THAT(Dialogs(), IsEmpty());
    EXPECT_THAT(Pages(), IsEmpty());
    EXPECT_TRUE(PressKey(VK_ESCAPE));
    EXPECT_THAT(Boxes(), IsEmpty());
    EXPECT_THAT(Pages(), ElementsAre("http://page/"));
}

TEST_F(DesktopHands, TheUserLogsOffWhileEverythingIsOpen) {
    StartTimer();
    ASSERT_TRUE(DoubleClick(kIcon));
    ASSERT_TRUE(PostCommand(502));
    ASSERT_TRUE(DoubleClick(kIcon));
    EXPECT_THAT(Dialogs(), SizeIs(2));
    EXPECT_FALSE(m_session.ExitCode());
    ASSERT_TRUE(LogOff());
    EXPECT_EQ(m_session.ExitCode(), 5);
    EXPECT_THAT(Dialogs(), IsEmpty());
    EXPECT_THAT(Boxes(), IsEmpty());
    EXPECT_THAT(Icons(), IsEmpty());
    EXPECT_EQ(Journal().back().kind, EventKind::kEnded);
}

TEST_F(DesktopHands, TheShellKeepsItsRules) {
    StartTimer();
    const HWND window =
        CreateWindowExA(0, "Static", "", 0, 0, 0, 0, 0, nullptr, nullptr, kSelf, nullptr);
    NOTIFYICONDATAA record = IconRecord(window);
    EXPECT_FALSE(Shell_NotifyIconA(NIM_MODIFY, &record));
    record.cbSize = 1;
    EXPECT_FALSE(Shell_NotifyIconA(NIM_ADD, &record));
    record.cbSize = NOTIFYICONDATAA_V3_SIZE;
    machine::FailNext("Shell_NotifyIconA", 1, ERROR_TIMEOUT, NIM_ADD);
    EXPECT_FALSE(Shell_NotifyIconA(NIM_ADD, &record));
    EXPECT_TRUE(Shell_NotifyIconA(NIM_ADD, &record));
    EXPECT_FALSE(Shell_NotifyIconA(NIM_ADD, &record));
    record.uVersion = 3;
    EXPECT_TRUE(Shell_NotifyIconA(NIM_SETVERSION, &record));
    EXPECT_EQ(Icons().back().version, 3u);
    DestroyWindow(window);
    EXPECT_THAT(Icons(), SizeIs(1));
}

// 10,000 rows, in front of each other and sorted, within the patience of a user.
TEST(ListViewAtLength, TakesTenThousandRows) {
    const HWND list = CreateWindowExA(0, WC_LISTVIEWA, "", LVS_REPORT, 0, 0, 100, 100, nullptr,
                                      nullptr, kSelf, nullptr);
    const auto start = std::chrono::steady_clock::now();
    LVITEMA item{};
    item.mask = LVIF_TEXT | LVIF_PARAM;
    item.pszText = const_cast<LPSTR>("row");
    for (item.lParam = 0; item.lParam < 10'000; ++item.lParam)
        ASSERT_EQ(SendMessageA(list, LVM_INSERTITEMA, 0, reinterpret_cast<LPARAM>(&item)), 0);
    const PFNLVCOMPARE ascending = [](LPARAM left, LPARAM right, LPARAM) -> int {
        return static_cast<int>(left - right);
    };
    ASSERT_TRUE(SendMessageA(list, LVM_SORTITEMS, 0, reinterpret_cast<LPARAM>(ascending)));
    EXPECT_LT(std::chrono::steady_clock::now() - start, 2s);  // also when sanitised
    item.iItem = 9'999;
    ASSERT_TRUE(SendMessageA(list, LVM_GETITEMA, 0, reinterpret_cast<LPARAM>(&item)));
    EXPECT_EQ(item.lParam, 9'999);
    DestroyWindow(list);
}

}  // namespace
