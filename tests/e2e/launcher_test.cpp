// Shows that the agent's Control Panel applet, here a sample, opens on the page asked for, and that
// a page that is open already is not opened again.
#include <gtest/gtest.h>

#include "Agent.h"
#include "Applet.h"
#include "Assistant.h"
#include "Waiting.h"

namespace {

constexpr char kSheet[] = "Tessara Link Sample Applet";

// Does the sheet show this page? A page is a child dialog with its title as text.
bool OnPage(const Dialog& sheet, const char* title) {
    const auto isUp = [&] {
        return IsWindowVisible(FindWindowExA(sheet.Window(), nullptr, "#32770", title));
    };
    return WaitFor(isUp, kPromptLimitMs);
}

bool AwaitSheets(const Applet& applet, size_t count) {
    return WaitFor([&] { return applet.Dialogs(kSheet).size() == count; }, kPromptLimitMs);
}

TEST(Launcher, OneSheetForEachPage) {
    const Agent agent;
    agent.RegisterSheetLibrary(ProgramFolder() + "sample_applet.cpl");
    const Applet applet;

    applet.DoubleClick(kHealthIcon);
    const Dialog health = applet.AwaitDialog(kSheet);
    EXPECT_TRUE(OnPage(health, "Health"));
    TakePicture("sample-sheet");

    // The second request for Health comes to nothing, so the sheet that opens after it is About's.
    applet.DoubleClick(kHealthIcon);
    applet.Choose(kAbout);
    ASSERT_TRUE(AwaitSheets(applet, 2));
    std::vector<HWND> sheets = applet.Dialogs(kSheet);
    std::erase(sheets, health.Window());
    ASSERT_EQ(sheets.size(), 1u);
    const Dialog about(sheets.front());
    EXPECT_TRUE(OnPage(about, "About"));
    EXPECT_TRUE(about.Close());
    EXPECT_TRUE(health.Close());
}

TEST(Launcher, MenuOpensBothPagesAndOpensThemAgain) {
    const Agent agent;
    agent.RegisterSheetLibrary(ProgramFolder() + "sample_applet.cpl");
    const Applet applet;
    const struct {
        char letter;
        const char* page;
    } items[] = {{'d', "Health"}, {'a', "About"}, {'d', "Health"}};
    for (const auto& item : items) {
        applet.OpenMenu();
        EXPECT_TRUE(applet.ChooseFromMenu(item.letter));
        const Dialog sheet = applet.AwaitDialog(kSheet);
        EXPECT_TRUE(OnPage(sheet, item.page));
        EXPECT_TRUE(sheet.Close());
    }
}

TEST(Launcher, MissingLibraryIsPassedOverUntilItIsThere) {
    const Agent agent;
    const Applet applet;
    for (const std::string& path : {std::string(), ProgramFolder() + "nowhere.cpl"}) {
        if (!path.empty()) agent.RegisterSheetLibrary(path);
        applet.DoubleClick(kHealthIcon);
        applet.Choose(kAbout);
        // A request that opened a sheet would not let the window answer from its own loop in time.
        SendMessageA(applet.Window(), WM_NULL, 0, 0);
        EXPECT_TRUE(applet.Dialogs(kSheet).empty());
        EXPECT_TRUE(applet.Running());
    }
}

}  // namespace
