// Shows when the applet starts and ends, with which exit code, and that it leaves nothing behind.
#include <gtest/gtest.h>

#include "Agent.h"
#include "Applet.h"
#include "Assistant.h"
#include "Waiting.h"

namespace {

TEST(Lifetime, ExitCodeTellsHowItWasClosedEvenWithoutAnAgent) {
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
    Agent().Unregister();
    for (const auto& way : cases) {
        SCOPED_TRACE(way.how);
        const Applet applet;
        ASSERT_NE(applet.Window(), nullptr);
        EXPECT_FALSE(IsWindowVisible(applet.Window()));
        PostMessageA(applet.Window(), way.message, way.command, 0);
        EXPECT_EQ(applet.AwaitExit(kPassLimitMs), way.code);
    }
}

TEST(Lifetime, SecondInstanceEndsAtOnceAndLeavesTheFirstAlone) {
    const Agent agent;
    agent.Report({.state = "medium"});
    const Applet first;
    ASSERT_TRUE(first.AwaitIcon(kHealthIcon, kPassLimitMs));
    TakePicture("balloon 3");  // it comes up two seconds after its icon
    {
        const Applet second;
        EXPECT_EQ(second.Window(), nullptr);
        EXPECT_EQ(second.AwaitExit(kPassLimitMs), 0u);
    }
    EXPECT_TRUE(first.Running());
    EXPECT_TRUE(first.Shows(kHealthIcon));
}

TEST(Lifetime, IconsGoWithTheApplet) {
    const Agent agent;
    agent.Report({.state = "low"});
    agent.RecordInstall("any.exe", 0);
    const Applet applet;
    EXPECT_TRUE(applet.AwaitIcon(kInstalledIcon, kPromptLimitMs));
    EXPECT_TRUE(applet.AwaitIcon(kHealthIcon, kPassLimitMs));
    agent.RecordDownload("any.msi", 0x80070002);
    EXPECT_TRUE(applet.AwaitIcon(kDownloadsIcon, kPromptLimitMs));
    applet.Choose(kExit);
    EXPECT_EQ(applet.AwaitExit(kPassLimitMs), 32780u);
    for (TrayIcon icon : {kHealthIcon, kUpdatesIcon, kInstalledIcon, kDownloadsIcon})
        EXPECT_FALSE(applet.Shows(icon));
}

}  // namespace
