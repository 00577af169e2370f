// The end of the process, a second instance, and the handles and keys of a long session.

#include "Agent.h"
#include "Applet.h"
#include "Updates.h"

namespace {

TEST(Lifetime, OneInstanceRunsUntilItIsClosedAndReturnsTheCommand) {
    const Agent agent;
    agent_sim::RecordInstall({"any.exe", 0, 0});
    const Applet first;
    EXPECT_FALSE(IsWindowVisible(first.Window()));
    ASSERT_TRUE(first.AwaitIcon(kInstalledIcon));
    const Applet second;
    EXPECT_EQ(second.Window(), nullptr);
    EXPECT_EQ(second.AwaitExit(kPassLimitMs), 0u);
    EXPECT_TRUE(first.Shows(kInstalledIcon));
    first.Choose(kExit);
    EXPECT_EQ(first.AwaitExit(kPassLimitMs), 32780u);
}

void Type(WORD key) {
    INPUT strokes[2]{};
    for (INPUT& stroke : strokes) {
        stroke.type = INPUT_KEYBOARD;
        stroke.ki.wVk = key;
    }
    strokes[1].ki.dwFlags = KEYEVENTF_KEYUP;
    SendInput(2, strokes, sizeof strokes[0]);
}

// Closes a dialog, box, sheet or menu with Esc. With `typed` the key comes from the keyboard, and
// so do further keys after it, which nothing may take.
bool Escape(HWND window, bool typed) {
    if (!typed) return PostMessageA(window, WM_KEYDOWN, VK_ESCAPE, 0) && AwaitEnd(window);
    SetForegroundWindow(window);
    Type(VK_ESCAPE);
    const bool closed = AwaitEnd(window);
    for (const WORD key : {WORD{VK_RETURN}, WORD{VK_ESCAPE}, WORD{VK_SPACE}}) Type(key);
    Sleep(500);
    return closed;
}

// Each event, dialog, sheet and menu once, the health box in every fifth round, since it takes a
// pass of the watcher.
void PlayRound(const Agent& agent, const Applet& applet, int round) {
    const bool typed = round == 0;
    if (round % 5 == 0) {
        agent.Report({.state = round % 2 ? "low" : "high", .message = "A new state."});
        EXPECT_TRUE(Escape(applet.AwaitDialog("Tessara Link Health"), typed));
    }
    agent_sim::RecordInstall({ProgramFolder() + "vh_tray.exe", 0, 0});
    agent_sim::RecordDownload({"a.msi", 0x80070002, 0});
    PostMessageA(applet.Window(), RegisterWindowMessageA("HLX_GotSWUpdates"), 0, 0);
    const std::pair<TrayIcon, const char*> dialogs[] = {
        {kInstalledIcon, "Installed Tessara Link Updates"},
        {kDownloadsIcon, "Failed Tessara Link Update Downloads"},
        {kUpdatesIcon, "Install Tessara Link Updates"},
        {kHealthIcon, "Tessara Link Sample Applet"}};
    for (const auto& [icon, caption] : dialogs)
        EXPECT_TRUE(Escape(applet.OpenDialog(icon, caption), typed)) << caption;
    EXPECT_TRUE(Escape(applet.OpenMenu(), typed)) << "the menu";
    applet.Choose(kReassess);
    ASSERT_EQ(applet.AwaitExit(0), DWORD{STILL_ACTIVE}) << round;
}

TEST(Lifetime, ThirtyRoundsOfEverythingLeaveNoHandle) {
    const Agent agent;
    agent_sim::WriteOffer({"Tessara Link Scanner", "4.2.8-1", "third", "fourth"});
    const Applet applet;
    for (int round = 0; round < 6 && !HasFatalFailure(); ++round) PlayRound(agent, applet, round);
    const Applet::Handles before = applet.CountHandles();
    for (int round = 6; round < 36 && !HasFailure(); ++round) PlayRound(agent, applet, round);
    EXPECT_TRUE(WaitFor([&] { return applet.CountHandles() == before; }, kPassLimitMs));
    std::printf("kernel handles %lu, USER %lu, GDI %lu, windows %lu\n", before.kernel, before.user,
                before.gdi, before.windows);
}

}  // namespace
