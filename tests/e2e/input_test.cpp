// Tests that clicks with the pointer of the screen reach the applet, for which an assistant is
// needed, and that unrelated keys do not.
#include <gtest/gtest.h>

#include <functional>

#include "Agent.h"
#include "Applet.h"
#include "Assistant.h"
#include "Updates.h"
#include "Waiting.h"

namespace {

TEST(Pointer, RightClickOpensTheMenu) {
    if (!AssistantIsThere()) GTEST_SKIP() << "nobody is there to move the pointer";
    const Agent agent;
    agent.Report({.state = "high"});
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
    agent_sim::RecordInstall({"any.exe", 0, 0});
    const Applet applet;
    ASSERT_TRUE(applet.AwaitIcon(kInstalledIcon, kPromptLimitMs));
    ASSERT_TRUE(AskAssistant("click 1 2"));
    EXPECT_TRUE(applet.AwaitDialog("Installed Tessara Link Updates").Press(IDYES));
    EXPECT_TRUE(applet.AwaitNoIcon(kInstalledIcon, kPromptLimitMs));
}

void Press(WORD key) {
    INPUT strokes[2]{};
    for (INPUT& stroke : strokes) {
        stroke.type = INPUT_KEYBOARD;
        stroke.ki.wVk = key;
    }
    strokes[1].ki.dwFlags = KEYEVENTF_KEYUP;
    SendInput(2, strokes, sizeof strokes[0]);
}

TEST(Keyboard, NoKeyEndsTheAppletOnceABoxDialogSheetOrTheMenuHasClosed) {
    const Agent agent(false, ProgramFolder() + "sample_cpl.cpl");
    agent_sim::RecordInstall({"any.exe", 0, 0});
    agent.Report({.state = "low", .message = "Please call."});
    const Applet applet;
    const struct {
        std::function<HWND()> open;
        WORD close;
    } windows[] = {
        {[&] { return applet.AwaitDialog("Tessara Link Health", kPassLimitMs).Window(); },
         VK_RETURN},
        {[&] {
             return applet.OpenDialog(kInstalledIcon, "Installed Tessara Link Updates").Window();
         },
         VK_ESCAPE},
        {[&] { return applet.OpenDialog(kHealthIcon, "Tessara Link Sample Applet").Window(); },
         VK_ESCAPE},
        {[&] { return applet.OpenMenu(); }, VK_ESCAPE}};
    for (const auto& window : windows) {
        const HWND opened = window.open();
        SetForegroundWindow(opened);
        Press(window.close);
        EXPECT_TRUE(WaitFor([&] { return !IsWindowVisible(opened); }, kPromptLimitMs));
        for (const WORD key : {WORD{VK_RETURN}, WORD{VK_ESCAPE}, WORD{VK_SPACE}}) Press(key);
        ASSERT_EQ(applet.AwaitExit(500), DWORD{STILL_ACTIVE}) << &window - windows;
    }
}

}  // namespace
