// Tests that the Control Panel applet, here the sample, opens on the requested page, and that an
// open page is not opened again.
#include <gtest/gtest.h>

#include "Agent.h"
#include "Applet.h"
#include "Assistant.h"
#include "Waiting.h"

namespace {

constexpr char kSheet[] = "Tessara Link Sample Applet";

// Whether the sheet shows this page. A page is a child dialog with its title as text.
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
    const Agent agent(false, ProgramFolder() + "sample_cpl.cpl");
    const Applet applet;

    applet.DoubleClick(kHealthIcon);
    const Dialog health = applet.AwaitDialog(kSheet);
    EXPECT_TRUE(OnPage(health, "Health"));
    TakePicture("sample-sheet");

    // The second request for Health opens nothing, so the next sheet is that of About.
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

}  // namespace
