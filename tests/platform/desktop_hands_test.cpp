// What the hands of the simulated desktop do on a program whose dialogs, boxes and menus nest: each
// reaches what lies in front, says so when there is nothing, and a log-off ends everything.
#include <windows.h>
#include <shellapi.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "desktop/desktop.h"
#include "desktop/session.h"
#include "machine/clock.h"

using namespace desktop;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

constexpr UINT kCallback = WM_APP + 7;
constexpr UINT kIcon = 9;
constexpr HINSTANCE kSelf = nullptr;

INT_PTR CALLBACK InnerProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM) {
    if (message == WM_COMMAND) EndDialog(dialog, LOWORD(wParam));
    return FALSE;
}

// Hidden. Its icon opens a dialog, a menu or, from the menu, a box and then a page.
INT_PTR CALLBACK MainProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == kCallback && lParam == WM_LBUTTONDBLCLK) {
        DialogBoxParamA(kSelf, MAKEINTRESOURCEA(100), dialog, InnerProcedure, 0);
    } else if (message == kCallback && lParam == WM_RBUTTONUP) {
        const HMENU menu = LoadMenuA(kSelf, MAKEINTRESOURCEA(100));
        TrackPopupMenu(GetSubMenu(menu, 0), TPM_RIGHTBUTTON, 3, 4, 0, dialog, nullptr);
        DestroyMenu(menu);
    } else if (message == WM_COMMAND && LOWORD(wParam) == 502) {
        MessageBoxA(dialog, "text", "caption", MB_OK);
        ShellExecuteA(dialog, "open", "http://page/", nullptr, nullptr, SW_SHOWNORMAL);
    } else if (message == WM_COMMAND && LOWORD(wParam) == IDCANCEL) {
        DestroyWindow(dialog);
        PostQuitMessage(5);
    }
    return FALSE;
}

int Program() {
    const HWND window = CreateDialogParamA(kSelf, MAKEINTRESOURCEA(100), nullptr, MainProcedure, 0);
    NOTIFYICONDATAA record{};
    record.cbSize = NOTIFYICONDATAA_V3_SIZE;
    record.hWnd = window;
    record.uID = kIcon;
    record.uFlags = NIF_MESSAGE;
    record.uCallbackMessage = kCallback;
    Shell_NotifyIconA(NIM_ADD, &record);
    MSG message;
    while (GetMessageA(&message, nullptr, 0, 0)) DispatchMessageA(&message);
    return static_cast<int>(message.wParam);
}

class DesktopHands : public testing::Test {
protected:
    struct HeldClock {
        HeldClock() { machine::Clock::Hold(machine::kUnixEpoch); }
        ~HeldClock() { machine::Clock::Release(); }
    };

    DesktopHands() { Advance(0ms); }

    HeldClock m_clock;
    Session m_session{Program};
};

TEST_F(DesktopHands, AHandThatFindsNothingSaysSo) {
    EXPECT_FALSE(Click(kIcon + 1));
    EXPECT_FALSE(Choose("First"));
    EXPECT_FALSE(DismissMenu());
    EXPECT_FALSE(Press("Yes"));
    EXPECT_FALSE(CloseWindow());
    ASSERT_TRUE(DoubleClick(kIcon));
    EXPECT_FALSE(Press("Maybe"));
    EXPECT_FALSE(ClickHeader(1));
}

TEST_F(DesktopHands, BoxesMenusAndDialogsNest) {
    ASSERT_TRUE(DoubleClick(kIcon));
    ASSERT_TRUE(RightClick(kIcon));
    ASSERT_TRUE(RightClick(kIcon));  // closes the menu and opens another one
    ASSERT_TRUE(Choose("Salt & pepper"));
    EXPECT_FALSE(OpenMenu());
    EXPECT_THAT(Boxes(), SizeIs(1));
    EXPECT_TRUE(Press("No", FindDialog("A dialog")->window));
    EXPECT_THAT(Dialogs(), IsEmpty());
    EXPECT_EQ(Journal().back(), (Event{EventKind::kDialogClosed, IDNO, "A dialog", ""}));
    EXPECT_THAT(Pages(), IsEmpty()) << "the box above the dialog still waits";
    EXPECT_TRUE(PressKey(VK_ESCAPE));
    EXPECT_THAT(Boxes(), IsEmpty());
    EXPECT_THAT(Pages(), ElementsAre("http://page/"));
}

TEST_F(DesktopHands, TheUserLogsOffWhileEverythingIsOpen) {
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

}  // namespace
