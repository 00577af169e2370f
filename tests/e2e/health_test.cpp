// A health result from the notification file to box, page and icon; what clicks on the icon open;
// the request for a new result.

#include "Agent.h"
#include "Applet.h"

namespace {

constexpr char kBoxCaption[] = "Tessara Link Health";
constexpr char kSheet[] = "Tessara Link Sample Applet";
constexpr int kBoxText = 0xFFFF;

TEST(Health, AResultShowsBoxPageAndIconAndANewOneCanBeRequested) {
    const HANDLE opened = CreateEventA(nullptr, TRUE, FALSE, "vh_tray e2e page");
    const std::string page = ProgramFolder() + "e2e_page.exe", message = "Definitions are old.";
    Agent agent;
    agent.Report({.state = "low", .message = message, .url = page});
    const Applet applet;
    const HWND box = applet.AwaitDialog(kBoxCaption);
    EXPECT_EQ(TextOf(GetDlgItem(box, kBoxText)), message);
    AskAssistant("picture box");
    EXPECT_FALSE(applet.Shows(kHealthIcon)) << "before the box is answered";
    EXPECT_TRUE(Press(box, IDOK));
    EXPECT_EQ(WaitForSingleObject(opened, kPassLimitMs), WAIT_OBJECT_0);
    EXPECT_TRUE(applet.AwaitIcon(kHealthIcon));
    // Where there is an assistant, the shell draws balloons as windows.
    EXPECT_TRUE(!AssistantIsThere() || AwaitBalloon("System health is low;"));
    AskAssistant("picture balloon");

    ASSERT_TRUE(applet.OpenMenu());
    EXPECT_TRUE(applet.ChooseFromMenu('r'));
    EXPECT_EQ(agent.Receive(), "UDP 4 ");
    agent.Report({.enabled = false, .message = "unseen"});
    EXPECT_TRUE(applet.AwaitIcon(kHealthIcon, false));
    EXPECT_TRUE(applet.Dialogs(kBoxCaption).empty());
    CloseHandle(opened);
}

// Whether the sheet shows this page. A page is a child dialog with its title as text.
bool AwaitPage(HWND sheet, const char* title) {
    const auto isUp = [&] {
        return IsWindowVisible(FindWindowExA(sheet, nullptr, "#32770", title));
    };
    return WaitFor(isUp, kPromptLimitMs);
}

// With the pointer of the screen if an assistant moves it.
TEST(Health, ClicksOnTheIconOpenMenuAndSheet) {
    const Agent agent;
    agent.Report({.state = "high"});
    const Applet applet;
    ASSERT_TRUE(applet.AwaitIcon(kHealthIcon));
    ASSERT_TRUE(AssistantIsThere() ? AskAssistant("click 3") : applet.OpenMenu() != nullptr);
    ASSERT_TRUE(applet.AwaitMenu());
    AskAssistant("picture menu");
    EXPECT_TRUE(applet.ChooseFromMenu('a'));
    const HWND about = applet.AwaitDialog(kSheet);
    EXPECT_TRUE(AwaitPage(about, "About"));
    EXPECT_TRUE(Press(about, IDCANCEL));

    if (AssistantIsThere())
        ASSERT_TRUE(AskAssistant("click 1 2"));
    else
        applet.DoubleClick(kHealthIcon);
    const HWND health = applet.AwaitDialog(kSheet);
    EXPECT_TRUE(AwaitPage(health, "Health"));
    AskAssistant("picture sample-sheet");
    // The second request for the page opens nothing, so the second sheet is that of the other page.
    applet.DoubleClick(kHealthIcon);
    applet.Choose(kAbout);
    const auto twoSheets = [&] { return applet.Dialogs(kSheet).size() == 2; };
    EXPECT_TRUE(WaitFor(twoSheets, kPromptLimitMs));
    for (const HWND sheet : applet.Dialogs(kSheet))
        EXPECT_TRUE(AwaitPage(sheet, sheet == health ? "Health" : "About"));
    // The later sheet closes first, since its message loop runs in that of the other one.
    for (const HWND sheet : applet.Dialogs(kSheet)) EXPECT_TRUE(Press(sheet, IDCANCEL));
}

}  // namespace
