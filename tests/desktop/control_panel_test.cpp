// The agent's Control Panel applet in the process of the applet: found, called, and opened once for
// each page.

#include "story.h"

namespace {

class ControlPanel : public Story {
protected:
    ControlPanel() {
        setenv("SAMPLE_CPL_JOURNAL", Journal().c_str(), 1);
        WriteText(HLX_CPLS_KEY, HLX_CPLS_VALUE, SAMPLE_CPL);
    }
    std::string Journal() const { return m_folder / "calls"; }
    // What the library has been called with so far, always by the controller.
    std::vector<std::string> Calls() const {
        std::ostringstream owner;
        owner << FindWindowA(nullptr, "hlx_vh_tray") << ' ';
        std::vector<std::string> calls;
        std::ifstream file(Journal());
        for (std::string line; std::getline(file, line);) {
            EXPECT_THAT(line, testing::StartsWith(owner.str()));
            calls.push_back(line.substr(owner.str().size()));
        }
        return calls;
    }
    // The page of the front sheet.
    static std::string Page() {
        const auto pages = Front().pages;
        return pages.empty() ? "none" : pages.front().caption;
    }
};

TEST_F(ControlPanel, EachPageHasOneSheetForWhichEveryCallIsMade) {
    StartWith({});
    desktop::DoubleClick(TRAY_ID_HEALTH);
    desktop::DoubleClick(TRAY_ID_HEALTH);
    EXPECT_EQ(desktop::Dialogs().size(), 1u);
    EXPECT_EQ(Page(), "Health");
    EXPECT_EQ(desktop::Foreground(), "Health");
    desktop::CloseWindow();
    EXPECT_THAT(Calls(), ElementsAre("1 0", "2 0", "3 0", "3 1", "9 0 Health", "6 0", "7 0"));
    desktop::DoubleClick(TRAY_ID_HEALTH);
    desktop::PostCommand(ID_ABOUT);
    EXPECT_EQ(desktop::Dialogs().size(), 2u);
    EXPECT_EQ(Page(), "About");
}

TEST_F(ControlPanel, NoKeyEndsTheProgramOnceABoxDialogSheetOrTheMenuHasClosed) {
    StartWith({});
    Report(HLX_INSTALL_RESULTS_KEY, "x", 0);
    const struct {
        const char* what;
        std::function<void()> open;
    } cases[] = {{"a box", [this] { Show({.state = "low", .message = "Please call."}); }},
                 {"a dialog", [] { desktop::DoubleClick(TRAY_ID_INSTALLED); }},
                 {"a sheet", [] { desktop::DoubleClick(TRAY_ID_HEALTH); }},
                 {"the menu", [] { desktop::RightClick(TRAY_ID_HEALTH); }}};
    for (const auto& each : cases) {
        each.open();
        EXPECT_TRUE(desktop::PressKey(VK_ESCAPE)) << each.what;
        EXPECT_TRUE(desktop::Dialogs().empty() && desktop::Boxes().empty() && !desktop::OpenMenu())
            << each.what;
        for (const int key : {VK_RETURN, VK_ESCAPE}) desktop::PressKey(key);
        ASSERT_EQ(ExitCode(), std::nullopt) << each.what;
    }
}

TEST_F(ControlPanel, OneThatIsMissingOrRefusesIsLookedForAgain) {
    RegDeleteTreeA(HKEY_LOCAL_MACHINE, HLX_CPLS_KEY);
    StartWith({});
    desktop::DoubleClick(TRAY_ID_HEALTH);
    EXPECT_THAT(desktop::Dialogs(), IsEmpty()) << "it is not registered";
    WriteText(HLX_CPLS_KEY, HLX_CPLS_VALUE, SAMPLE_CPL);
    setenv("SAMPLE_CPL_REFUSES", "1", 1);
    desktop::DoubleClick(TRAY_ID_HEALTH);
    EXPECT_THAT(desktop::Dialogs(), IsEmpty());
    unsetenv("SAMPLE_CPL_REFUSES");
    for (const char* operation : {"LoadLibraryA", "GetProcAddress"}) {
        simulator::FailNext(operation, 1, ERROR_MOD_NOT_FOUND);
        desktop::DoubleClick(TRAY_ID_HEALTH);
        EXPECT_THAT(desktop::Dialogs(), IsEmpty()) << operation;
    }
    EXPECT_THAT(Calls(), ElementsAre("1 0"));
    desktop::DoubleClick(TRAY_ID_HEALTH);
    EXPECT_EQ(Page(), "Health");
}

}  // namespace
