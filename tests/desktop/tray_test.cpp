// What a click in the notification area does, and the menu.
#include "story.h"

namespace {

class TrayIcons : public Story {
protected:
    TrayIcons() { StartWith({}); }
};

TEST_F(TrayIcons, APointBesideAllMonitorsIsDrawnToTheNearestInX) {
    for (const auto& [pointer, menu] : {std::pair{-50, 0}, {5000, 1024}}) {
        desktop::MovePointer(pointer, 5000);
        desktop::RightClick(TRAY_ID_HEALTH);
        EXPECT_EQ(desktop::OpenMenu().value().place.x, menu);
        EXPECT_EQ(desktop::OpenMenu().value().place.y, 5000);
    }
}

TEST_F(TrayIcons, EverythingElseDoesNothing) {
    Report(HLX_INSTALL_RESULTS_KEY, "x", 0);
    desktop::Forget();
    desktop::Click(TRAY_ID_HEALTH);
    desktop::MoveOver(TRAY_ID_HEALTH);
    desktop::Click(TRAY_ID_INSTALLED);
    desktop::RightClick(TRAY_ID_INSTALLED);
    for (const UINT message : {511u, 673u, 675u, 676u, UINT{NIN_SELECT}})
        desktop::Callback(TRAY_ID_HEALTH, message);
    desktop::Post(WM_TRAYNOTIFY, 10057, WM_LBUTTONDBLCLK);
    simulator::FailNext("LoadMenuA", 1, ERROR_RESOURCE_NAME_NOT_FOUND);
    desktop::RightClick(TRAY_ID_HEALTH);
    EXPECT_THAT(desktop::Journal(), IsEmpty());
    EXPECT_FALSE(desktop::OpenMenu());
    EXPECT_THAT(Tray(), ElementsAre(TRAY_ID_HEALTH, TRAY_ID_INSTALLED));
}

}  // namespace
