// Tests when the applet starts and ends, with which exit code, and that no icon remains.
#include <gtest/gtest.h>

#include "Agent.h"
#include "Applet.h"
#include "Assistant.h"
#include "Updates.h"
#include "Waiting.h"

namespace {

TEST(Lifetime, ExitCodeShowsHowItWasClosedAndTheIconIsRemoved) {
    const struct {
        const char* how;
        UINT message;
        WPARAM command;
        DWORD code;
    } cases[] = {
        {"OK", WM_COMMAND, IDOK, 1},
        {"Cancel", WM_COMMAND, IDCANCEL, 2},
        {"a close request", WM_CLOSE, 0, 2},
        {"Exit", WM_COMMAND, kExit, 32780},
    };
    const Agent agent;
    agent_sim::RecordInstall({"any.exe", 0, 0});
    for (const auto& way : cases) {
        SCOPED_TRACE(way.how);
        const Applet applet;
        ASSERT_NE(applet.Window(), nullptr);
        EXPECT_FALSE(IsWindowVisible(applet.Window()));
        EXPECT_TRUE(applet.AwaitIcon(kInstalledIcon, kPromptLimitMs));
        PostMessageA(applet.Window(), way.message, way.command, 0);
        EXPECT_EQ(applet.AwaitExit(kPassLimitMs), way.code);
        EXPECT_FALSE(applet.Shows(kInstalledIcon));
    }
}

TEST(Lifetime, SecondInstanceEndsAtOnceWithoutEffect) {
    const Agent agent;
    agent.Report({.state = "medium"});
    const Applet first;
    ASSERT_TRUE(first.AwaitIcon(kHealthIcon, kPassLimitMs));
    TakePicture("balloon 3");  // it appears two seconds after its icon
    {
        const Applet second;
        EXPECT_EQ(second.Window(), nullptr);
        EXPECT_EQ(second.AwaitExit(kPassLimitMs), 0u);
    }
    EXPECT_TRUE(first.Running());
    EXPECT_TRUE(first.Shows(kHealthIcon));
}

// Each event, dialog, sheet and menu once, the health box in every fifth round, since it takes a
// pass of the watcher.
void PlayRound(const Agent& agent, const Applet& applet, int round) {
    if (round % 5 == 0) {
        agent.Report({.state = round % 2 ? "low" : "high", .message = "A new state."});
        EXPECT_TRUE(applet.AwaitDialog("Tessara Link Health", kPassLimitMs).Press(IDOK));
    }
    agent_sim::RecordInstall({ProgramFolder() + "vh_tray.exe", 0, 0});
    agent_sim::RecordDownload({"a.msi", 0x80070002, 0});
    PostMessageA(applet.Window(), RegisterWindowMessageA("HLX_GotSWUpdates"), 0, 0);
    EXPECT_TRUE(applet.OpenDialog(kInstalledIcon, "Installed Tessara Link Updates").Close());
    EXPECT_TRUE(applet.OpenDialog(kDownloadsIcon, "Failed Tessara Link Update Downloads").Close());
    EXPECT_TRUE(applet.OpenDialog(kUpdatesIcon, "Install Tessara Link Updates").Close());
    applet.Choose(kAbout);
    EXPECT_TRUE(applet.AwaitDialog("Tessara Link Sample Applet").Close());
    EXPECT_NE(applet.OpenMenu(), nullptr);
    EXPECT_TRUE(applet.ChooseFromMenu('r'));
}

TEST(Lifetime, ThirtyRoundsOfEverythingLeaveNoHandle) {
    const Agent agent(false, ProgramFolder() + "sample_cpl.cpl");
    agent.Offer("Tessara Link Scanner", "4.2.8-1");
    const Applet applet;
    for (int round = 0; round < 6; ++round) PlayRound(agent, applet, round);
    const Applet::Handles before = applet.CountHandles();
    for (int round = 0; round < 30 && !HasFailure(); ++round) PlayRound(agent, applet, round);
    EXPECT_TRUE(WaitFor([&] { return applet.CountHandles() == before; }, kPassLimitMs));
    std::printf("kernel handles %lu, USER %lu, GDI %lu, windows %lu\n", before.kernel, before.user,
                before.gdi, before.windows);
}

}  // namespace
