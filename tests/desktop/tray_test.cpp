// What a click in the notification area does, and the menu.
#include "story.h"

namespace {

class TrayIcons : public Story {
protected:
    TrayIcons() { StartWith({}); }
};

TEST_F(TrayIcons, TheMenuOfTheHealthIcon) {
    desktop::MovePointer(300, 400);
    ASSERT_TRUE(desktop::RightClick(TRAY_ID_HEALTH));
    const auto menu = desktop::OpenMenu();
    ASSERT_TRUE(menu);
    EXPECT_EQ(menu->place.x, 300);
    EXPECT_EQ(menu->place.y, 400);
    std::vector<std::string> texts;
    for (const auto& item : menu->items) texts.push_back(item.text);
    EXPECT_THAT(texts, ElementsAre("Display last health results", "Reassess health", "About"));
    EXPECT_TRUE(menu->items[0].isDefault);
    ASSERT_TRUE(desktop::Choose("Reassess health"));
    EXPECT_FALSE(desktop::OpenMenu());
    EXPECT_EQ(Frames().size(), 1u);
}

TEST_F(TrayIcons, TheIconChangesUnderAnOpenMenu) {
    desktop::RightClick(TRAY_ID_HEALTH);
    desktop::Click(TRAY_ID_HEALTH);
    EXPECT_FALSE(desktop::OpenMenu()) << "any click elsewhere closes it";
    desktop::RightClick(TRAY_ID_HEALTH);
    Show({.state = "low"});
    EXPECT_EQ(Tip(TRAY_ID_HEALTH), "System health is low");
    EXPECT_TRUE(desktop::DismissMenu());
    EXPECT_THAT(Frames(), IsEmpty());
}

TEST_F(TrayIcons, APointBesideAllMonitorsIsDrawnToTheNearestInX) {
    desktop::MovePointer(-50, 5000);
    desktop::RightClick(TRAY_ID_HEALTH);
    EXPECT_EQ(desktop::OpenMenu()->place.x, 0);
    EXPECT_EQ(desktop::OpenMenu()->place.y, 5000);
}

TEST_F(TrayIcons, EverythingElseDoesNothing) {
    Report(kInstallResultsKey, "x", 0);
    desktop::Forget();
    desktop::Click(TRAY_ID_HEALTH);
    desktop::MoveOver(TRAY_ID_HEALTH);
    desktop::Click(TRAY_ID_INSTALLED);
    desktop::RightClick(TRAY_ID_INSTALLED);
    for (const UINT message : {511u, 673u, 675u, 676u, UINT{NIN_SELECT}})
        desktop::Callback(TRAY_ID_HEALTH, message);
    desktop::Post(WM_TRAYNOTIFY, 10057, WM_LBUTTONDBLCLK);
    machine::FailNext("LoadMenuA", 1, ERROR_RESOURCE_NAME_NOT_FOUND);
    desktop::RightClick(TRAY_ID_HEALTH);
    EXPECT_THAT(desktop::Journal(), IsEmpty());
    EXPECT_FALSE(desktop::OpenMenu());
    EXPECT_THAT(Tray(), ElementsAre(TRAY_ID_HEALTH, TRAY_ID_INSTALLED));
}

TEST_F(TrayIcons, TwoDialogsOnOneTransientIcon) {
    Report(kInstallResultsKey, "x", 0);
    desktop::DoubleClick(TRAY_ID_INSTALLED);
    desktop::DoubleClick(TRAY_ID_INSTALLED);
    EXPECT_EQ(desktop::Dialogs().size(), 2u);
    desktop::CloseWindow();
    EXPECT_THAT(Tray(), ElementsAre(TRAY_ID_HEALTH)) << "the first to close takes the icon";
    desktop::CloseWindow();
    EXPECT_THAT(desktop::Dialogs(), IsEmpty());
}

TEST_F(TrayIcons, ADialogUnderABoxCanBeAnsweredFirst) {
    Report(kInstallResultsKey, "x", 0);
    desktop::DoubleClick(TRAY_ID_INSTALLED);
    Show({.state = "low", .message = "Please call.", .url = "http://help"});
    ASSERT_TRUE(desktop::Press("OK", desktop::Dialogs().at(0).window));
    EXPECT_THAT(desktop::Dialogs(), IsEmpty());
    EXPECT_THAT(desktop::Pages(), IsEmpty()) << "the box above the dialog still waits";
    ASSERT_TRUE(desktop::PressKey(VK_ESCAPE));
    EXPECT_THAT(desktop::Pages(), ElementsAre("http://help"));
}

TEST_F(TrayIcons, AHandThatFindsNothingSaysSo) {
    EXPECT_FALSE(desktop::Click(TRAY_ID_UPDATES));
    EXPECT_FALSE(desktop::Choose("About"));
    EXPECT_FALSE(desktop::DismissMenu());
    EXPECT_FALSE(desktop::Press("Yes"));
    EXPECT_FALSE(desktop::ClickHeader(0));
    EXPECT_FALSE(desktop::CloseWindow());
}

}  // namespace
