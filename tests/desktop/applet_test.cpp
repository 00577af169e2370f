// The agent's Control Panel applet inside the tray's process: found, driven, and never doubled.
#include <fstream>
#include <iterator>

#include "story.h"

namespace {

constexpr char kCplsKey[] = R"(SOFTWARE\Microsoft\Windows\CurrentVersion\Control Panel\Cpls)";

class Applet : public Story {
protected:
    Applet() {
        setenv("SAMPLE_APPLET_JOURNAL", Journal().c_str(), 1);
        WriteText(kCplsKey, "Tessara Link ", SAMPLE_APPLET);
    }
    std::string Journal() const { return m_folder / "calls"; }
    // What the applet has been called with so far.
    std::string Calls() const {
        std::ifstream file(Journal());
        return {std::istreambuf_iterator<char>(file), {}};
    }
    // The page of the front sheet.
    static std::string Page() {
        const auto pages = Front().pages;
        return pages.empty() ? "none" : pages.front().caption;
    }
};

TEST_F(Applet, ADoubleClickOpensTheHealthPageAndEveryCallIsMade) {
    StartWith({});
    ASSERT_TRUE(desktop::DoubleClick(TRAY_ID_HEALTH));
    EXPECT_EQ(Page(), "Health");
    desktop::CloseWindow();
    EXPECT_THAT(desktop::Dialogs(), IsEmpty());
    EXPECT_EQ(Calls(), "1\n2\n3\n9 Health\n6\n7\n");
}

TEST_F(Applet, TheMenuOpensEitherPageAndAClosedOneOpensAgain) {
    StartWith({});
    for (const char* const item : {"Display last health results", "About", "About"}) {
        desktop::RightClick(TRAY_ID_HEALTH);
        ASSERT_TRUE(desktop::Choose(item));
        EXPECT_EQ(Page(), *item == 'D' ? "Health" : "About");
        desktop::CloseWindow();
        EXPECT_THAT(desktop::Dialogs(), IsEmpty());
    }
}

TEST_F(Applet, ThePageThatIsOpenComesForwardTheOtherOpensASecondSheet) {
    StartWith({});
    desktop::DoubleClick(TRAY_ID_HEALTH);
    desktop::DoubleClick(TRAY_ID_HEALTH);
    EXPECT_EQ(desktop::Dialogs().size(), 1u);
    EXPECT_EQ(desktop::Foreground(), "Health");
    desktop::PostCommand(ID_ABOUT);
    EXPECT_EQ(desktop::Dialogs().size(), 2u);
    EXPECT_EQ(Page(), "About");
    Show({.state = "low"});
    EXPECT_EQ(Tip(TRAY_ID_HEALTH), "System health is low") << "the tray stays alive";
    desktop::CloseWindow();
    desktop::CloseWindow();
    EXPECT_THAT(desktop::Dialogs(), IsEmpty());
}

TEST_F(Applet, OneThatIsMissingOrRefusesIsLookedForAgain) {
    RegDeleteTreeA(HKEY_LOCAL_MACHINE, kCplsKey);
    StartWith({});
    desktop::DoubleClick(TRAY_ID_HEALTH);
    EXPECT_THAT(desktop::Dialogs(), IsEmpty()) << "nobody has registered it";
    WriteText(kCplsKey, "Tessara Link ", SAMPLE_APPLET);
    setenv("SAMPLE_APPLET_REFUSES", "1", 1);
    desktop::DoubleClick(TRAY_ID_HEALTH);
    EXPECT_THAT(desktop::Dialogs(), IsEmpty());
    unsetenv("SAMPLE_APPLET_REFUSES");
    for (const char* operation : {"LoadLibraryA", "GetProcAddress"}) {
        machine::FailNext(operation, 1, ERROR_MOD_NOT_FOUND);
        desktop::DoubleClick(TRAY_ID_HEALTH);
        EXPECT_THAT(desktop::Dialogs(), IsEmpty()) << operation;
    }
    EXPECT_EQ(Calls(), "1\n");
    desktop::DoubleClick(TRAY_ID_HEALTH);
    EXPECT_EQ(Page(), "Health");
}

}  // namespace
