// Tests the three update events, each from the file or key of the daemon to its icon, its dialog
// and the command. No test reboots: Yes is not pressed where it would.
#include <gtest/gtest.h>

#include "Agent.h"
#include "Applet.h"
#include "Assistant.h"
#include "Updates.h"
#include "Waiting.h"

namespace {

constexpr int kIntro = 1001;
constexpr int kListLabel = 65535;
constexpr char kAvailable[] = "Install Tessara Link Updates";
constexpr char kInstalled[] = "Installed Tessara Link Updates";
constexpr char kFailed[] = "Failed Tessara Link Update Downloads";
constexpr DWORD kNotFound = 0x80070002;
constexpr DWORD kRebootRequired = 3010;

void ExpectList(const Dialog& dialog, int columns, int rows) {
    EXPECT_EQ(dialog.AskHeader(HDM_GETITEMCOUNT), columns);
    EXPECT_EQ(dialog.AskList(LVM_GETITEMCOUNT), rows);
}

TEST(Updates, OfferIsAnnouncedShownAndDownloaded) {
    const Listener daemon(Listener::kUdp);
    const Agent agent;
    agent.Report({.state = "high"});
    agent.Offer("Tessara Link Scanner", "4.2.8-1");
    const Applet applet;
    const Dialog dialog = applet.OpenDialog(kUpdatesIcon, kAvailable);
    EXPECT_TRUE(dialog.Text(kIntro).starts_with("The following Tessara Link software updates "));
    EXPECT_EQ(dialog.Text(kListLabel), "&Available Updates:");
    ExpectList(dialog, 2, 1);
    TakePicture("available-updates");

    EXPECT_TRUE(applet.Shows(kUpdatesIcon));
    EXPECT_TRUE(dialog.Press(IDYES));
    EXPECT_EQ(daemon.Receive(kPromptLimitMs), FrameOf(7));
    EXPECT_TRUE(applet.AwaitNoIcon(kUpdatesIcon, kPromptLimitMs));
}

TEST(Updates, FailedDownloadsAreListedSortedAndTriedAgain) {
    const Listener daemon(Listener::kUdp);
    const Agent agent;
    const Applet applet;
    agent_sim::RecordDownload({"middle.msi", kNotFound, 120});
    agent_sim::RecordDownload({"old.msi", kNotFound, 700});
    agent_sim::RecordDownload({"Zulu.msi", kNotFound, 60});
    agent_sim::RecordDownload({"alpha with a rather long name.msi", kNotFound, 180});
    // A change is reported only when the applet watches the key, which cannot be seen from outside.
    const auto noticed = [&] {
        agent_sim::RecordDownload({"good.msi", 0, 0});
        return applet.Shows(kDownloadsIcon);
    };
    EXPECT_TRUE(WaitFor(noticed, kPassLimitMs));
    const Dialog dialog = applet.OpenDialog(kDownloadsIcon, kFailed);
    EXPECT_EQ(dialog.Text(kListLabel), "&Failed Downloads:");
    ExpectList(dialog, 3, 3);
    EXPECT_EQ(dialog.AskList(LVM_GETNEXTITEM, -1, LVNI_SELECTED), -1);
    TakePicture("failed-downloads");

    EXPECT_TRUE(dialog.Press(IDYES));
    EXPECT_EQ(daemon.Receive(kPromptLimitMs), FrameOf(7));
    EXPECT_TRUE(applet.AwaitNoIcon(kDownloadsIcon, kPromptLimitMs));
}

TEST(Updates, InstallationThatNeedsARebootAsksForIt) {
    const Agent agent;
    agent_sim::RecordInstall({ProgramFolder() + "sample_cpl.cpl", kRebootRequired, 0});
    agent_sim::RecordInstall({ProgramFolder() + "vh_tray.exe", kRebootRequired, 60});
    agent_sim::RecordInstall({"C:\\no such file.exe", 0, 0});
    const Applet applet;
    const Dialog dialog = applet.OpenDialog(kInstalledIcon, kInstalled);
    EXPECT_EQ(
        dialog.Text(kIntro),
        "The following Tessara Link updates have been installed at the specified dates and with "
        "the specified results.\r\n\r\nThe update requires a reboot to finish.  Click Yes to "
        "reboot the system now, or No to reboot later.");
    EXPECT_EQ(dialog.Text(kListLabel), "&Installed Updates:");
    ExpectList(dialog, 4, 2);  // a file that does not exist has no name to show
    EXPECT_EQ(dialog.AskList(LVM_GETNEXTITEM, -1, LVNI_SELECTED), 0);
    EXPECT_EQ(dialog.Text(IDYES), "Yes");
    EXPECT_EQ(dialog.Text(IDNO), "No");
    TakePicture("installed-updates");

    EXPECT_TRUE(dialog.Press(IDNO));
    EXPECT_TRUE(applet.AwaitNoIcon(kInstalledIcon, kPromptLimitMs));
    EXPECT_TRUE(applet.Running());
}

}  // namespace
