// The hover tracker, which no part of the applet makes: one post when the pointer comes, one when
// it has left.
#include "TrayMouseTrack.h"
#include "story.h"

namespace {

constexpr UINT kMessage = WM_APP + 1;

class Tracker : public Story {
protected:
    Tracker()
        : m_window(CreateDialogParamA(
              GetModuleHandleA(nullptr), MAKEINTRESOURCEA(IDD_MAINDLG), nullptr,
              [](HWND, UINT, WPARAM, LPARAM) -> INT_PTR { return FALSE; }, 0)),
          m_tracker(std::make_unique<CTrayMouseTrack>(m_window, kMessage, TRAY_ID_HEALTH)) {}
    ~Tracker() override {
        m_tracker.reset();
        DestroyWindow(m_window);
    }
    void MoveTo(int x, int y) {
        desktop::MovePointer(x, y);
        m_tracker->OnMouseMove();
    }
    std::vector<LPARAM> Posts() {
        desktop::Advance(1s);
        std::vector<LPARAM> posts;
        for (MSG message; PeekMessageA(&message, m_window, kMessage, kMessage, PM_REMOVE);) {
            EXPECT_EQ(message.wParam, TRAY_ID_HEALTH);
            posts.push_back(message.lParam);
        }
        return posts;
    }

    const HWND m_window;
    std::unique_ptr<CTrayMouseTrack> m_tracker;
};

TEST_F(Tracker, OneHoverAndOneLeaveForAStay) {
    // The rectangle's size is the system's, or 5 pixels while that cannot be read.
    machine::FailNext("SystemParametersInfoA", machine::kEveryCall, ERROR_INVALID_PARAMETER);
    MoveTo(100, 100);
    MoveTo(104, 103);
    EXPECT_THAT(Posts(), ElementsAre(WM_MOUSEHOVER));
    MoveTo(110, 110);
    EXPECT_THAT(Posts(), IsEmpty()) << "each move takes the rectangle along";
    desktop::MovePointer(114, 106);
    EXPECT_THAT(Posts(), IsEmpty());
    desktop::MovePointer(110, 105);
    EXPECT_THAT(Posts(), ElementsAre(WM_MOUSELEAVE)) << "at exactly the height it has left";
    EXPECT_THAT(Posts(), IsEmpty());
    MoveTo(110, 105);
    EXPECT_THAT(Posts(), ElementsAre(WM_MOUSEHOVER));
}

TEST_F(Tracker, StopsAtOnceAndPostsToNoWindowThatIsGone) {
    DestroyWindow(m_window);
    MoveTo(1, 1);
    desktop::MovePointer(500, 500);
    desktop::Advance(1s);
    EXPECT_TRUE(m_tracker->Stop(2000));
}

}  // namespace
