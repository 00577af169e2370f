// Shows that a real pointer on a real icon reaches the applet. Needs an assistant.
#include <gtest/gtest.h>

#include "Agent.h"
#include "Applet.h"
#include "Assistant.h"
#include "Waiting.h"

namespace {

TEST(Pointer, RightClickOpensTheMenu) {
    if (!AssistantIsThere()) GTEST_SKIP() << "nobody is there to move the pointer";
    const Agent agent;
    agent.Report({});
    const Applet applet;
    ASSERT_TRUE(applet.AwaitIcon(kHealthIcon, kPassLimitMs));
    ASSERT_TRUE(AskAssistant("click 3"));
    ASSERT_TRUE(applet.AwaitMenu());
    TakePicture("menu");
    EXPECT_TRUE(applet.ChooseFromMenu('a'));
}

TEST(Pointer, DoubleClickOpensTheDialogOfATransientIcon) {
    if (!AssistantIsThere()) GTEST_SKIP() << "nobody is there to move the pointer";
    const Agent agent;
    agent.RecordInstall("any.exe", 0);
    const Applet applet;
    ASSERT_TRUE(applet.AwaitIcon(kInstalledIcon, kPromptLimitMs));
    ASSERT_TRUE(AskAssistant("click 1 2"));
    EXPECT_TRUE(applet.AwaitDialog("Installed Tessara Link Updates").Press(IDYES));
    EXPECT_TRUE(applet.AwaitNoIcon(kInstalledIcon, kPromptLimitMs));
}

}  // namespace
