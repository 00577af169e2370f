// The hover tracker, which no part of the applet makes: one post when the pointer comes, one when
// it has left.
#include "controller/TrayMouseTrack.h"
#include "story.h"

namespace {

class Tracker : public Receiver {
protected:
    void MoveTo(int x, int y) {
        desktop::MovePointer(x, y);
        m_tracker->OnMouseMove();
    }
    std::vector<LPARAM> Posts() {
        desktop::Advance(1s);
        std::vector<LPARAM> posts;
        for (const MSG& message : Received()) {
            EXPECT_EQ(message.wParam, TRAY_ID_HEALTH);
            posts.push_back(message.lParam);
        }
        return posts;
    }

    std::unique_ptr<CTrayMouseTrack> m_tracker =
        std::make_unique<CTrayMouseTrack>(m_window, kMessage, TRAY_ID_HEALTH);
};

TEST_F(Tracker, OneHoverAndOneLeaveForAStay) {
    // The rectangle's size is the system's, or 5 pixels while that cannot be read.
    simulator::FailNext("SystemParametersInfoA", simulator::kEveryCall, ERROR_INVALID_PARAMETER);
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

}  // namespace
