// Shows the road of a health result, from the notification file to icon, box and page, and that of
// a reassess request, from the menu to the daemon's port.
#include <gtest/gtest.h>

#include "Agent.h"
#include "Applet.h"
#include "Assistant.h"
#include "Waiting.h"

namespace {

constexpr char kBoxCaption[] = "Tessara Link Health";
constexpr int kBoxText = 0xFFFF;

// Asks for an assessment until a request goes out. One does only when a result has been delivered
// since the last, so this shows that the applet has looked at the file again.
bool ReassessGoesOut(const Applet& applet, const Listener& daemon, DWORD limitMs) {
    const auto goesOut = [&] {
        applet.Choose(kReassess);
        return daemon.Receive(100) == FrameOf(4);
    };
    return WaitFor(goesOut, limitMs);
}

TEST(Health, EachStateShowsItsBoxAndThenItsIcon) {
    const bool balloonsAreWindows = BalloonsAreWindows();
    const struct {
        const char *state, *message, *balloon;
    } reports[] = {
        {"low", "Virus definitions are old.", "System health is low;"},
        {"medium", "One program is out of date.", "System health is medium;"},
        {"high", "All is well again.", "System health is high;"},
        {"unknown", "The machine could not be assessed.", nullptr},
    };
    const Agent agent;
    const Applet applet;
    for (const auto& report : reports) {
        SCOPED_TRACE(report.state);
        agent.Report({.state = report.state, .message = report.message});
        const Dialog box = applet.AwaitDialog(kBoxCaption, kPassLimitMs);
        EXPECT_EQ(box.Text(kBoxText), report.message);
        const bool first = &report == reports;
        if (first) TakePicture("box");
        EXPECT_NE(applet.Shows(kHealthIcon), first) << "the tray waits for the box";
        EXPECT_TRUE(box.Press(IDOK));
        if (!report.balloon) continue;
        EXPECT_TRUE(applet.AwaitIcon(kHealthIcon, kPromptLimitMs));
        EXPECT_TRUE(!balloonsAreWindows || AwaitBalloon(report.balloon));
    }
    EXPECT_TRUE(applet.AwaitNoIcon(kHealthIcon, kPromptLimitMs));
}

TEST(Health, OpensThePageOfTheResultAndADisabledOneTakesTheIconAway) {
    const HANDLE opened = CreateEventA(nullptr, TRUE, FALSE, "vh_tray e2e page");
    const Agent agent;
    agent.Report({.state = "high", .url = ProgramFolder() + "e2e_page.exe"});
    const Applet applet;
    EXPECT_EQ(WaitForSingleObject(opened, kPassLimitMs + kPromptLimitMs), WAIT_OBJECT_0);
    EXPECT_TRUE(applet.AwaitIcon(kHealthIcon, kPromptLimitMs));
    CloseHandle(opened);
    agent.Report({.enabled = false, .message = "unseen"});
    EXPECT_TRUE(applet.AwaitNoIcon(kHealthIcon, kPassLimitMs));
    EXPECT_TRUE(applet.Dialogs(kBoxCaption).empty());
}

TEST(Health, MissingParserLibraryDropsTheResultAndNoMore) {
    const Agent agent;
    const std::string lonely = agent.Directory() + "vh_tray.exe";
    ASSERT_TRUE(CopyFileA((ProgramFolder() + "vh_tray.exe").c_str(), lonely.c_str(), FALSE));
    char folder[MAX_PATH];
    GetCurrentDirectoryA(MAX_PATH, folder);
    SetCurrentDirectoryA(agent.Directory().c_str());
    {
        const Listener daemon(Listener::kUdp);
        const Applet applet(lonely);
        agent.Report({.state = "high"});
        ASSERT_TRUE(ReassessGoesOut(applet, daemon, kPassLimitMs));
        EXPECT_TRUE(ReassessGoesOut(applet, daemon, 2 * kPassLimitMs)) << "nothing was delivered";
        EXPECT_FALSE(applet.Shows(kHealthIcon));

        ASSERT_TRUE(CopyFileA((ProgramFolder() + "LIBEXPAT.dll").c_str(),
                              (agent.Directory() + "LIBEXPAT.dll").c_str(), FALSE));
        agent.Report({.state = "high"});
        EXPECT_TRUE(applet.AwaitIcon(kHealthIcon, kPassLimitMs));
    }
    SetCurrentDirectoryA(folder);
    EXPECT_TRUE(DeleteFileA(lonely.c_str()));
}

TEST(Reassess, IsAnItemOfTheMenuAndGoesOutOnceUntilAResultComes) {
    const Listener daemon(Listener::kUdp);
    const Agent agent;
    const Applet applet;
    ASSERT_TRUE(applet.OpenMenu());
    EXPECT_TRUE(applet.ChooseFromMenu('r'));
    EXPECT_EQ(daemon.Receive(kPromptLimitMs), FrameOf(4));
    applet.Choose(kReassess);
    EXPECT_EQ(daemon.Receive(500), "");
    agent.Report({.state = "high"});
    EXPECT_TRUE(ReassessGoesOut(applet, daemon, kPassLimitMs));
}

TEST(Reassess, GoesByTcpWhenTheAgentSaysSo) {
    const Agent agent(true);
    const Listener daemon(Listener::kTcp);
    const Applet applet;
    applet.Choose(kReassess);
    EXPECT_EQ(daemon.Receive(kPromptLimitMs), FrameOf(4));
}

}  // namespace
