// Shows the three update events, each from the daemon's file or key to its icon, its dialog with
// list and buttons, and the command that goes back. Nothing here reboots: Yes is not pressed where
// it would.
#include <gtest/gtest.h>

#include "Agent.h"
#include "Applet.h"
#include "Assistant.h"
#include "Waiting.h"

namespace {

constexpr int kIntro = 1001;
constexpr int kListLabel = 65535;
constexpr char kAvailable[] = "Install Tessara Link Updates";
constexpr char kInstalled[] = "Installed Tessara Link Updates";
constexpr char kFailed[] = "Failed Tessara Link Update Downloads";
constexpr DWORD kNotFound = 0x80070002;
constexpr DWORD kRebootRequired = 3010;

void ExpectColumns(const RemoteList& list, const std::vector<std::string>& titles) {
    ASSERT_EQ(list.Columns(), static_cast<int>(titles.size()));
    for (int column = 0; column < list.Columns(); ++column) {
        EXPECT_EQ(list.Title(column), titles[static_cast<size_t>(column)]);
        // As wide as its widest text; a cell has 15 pixels more than a title, and all have 15 more.
        int width = list.WidthOf(list.Title(column));
        for (int row = 0; row < list.Rows(); ++row)
            width = std::max(width, list.WidthOf(list.Cell(row, column)) + 15);
        EXPECT_EQ(list.Width(column), width + 15) << list.Title(column);
    }
}

std::string ColumnText(const RemoteList& list, int column) {
    std::string text;
    for (int row = 0; row < list.Rows(); ++row) text += list.Cell(row, column) + ";";
    return text;
}

TEST(Updates, OfferIsAnnouncedShownAndFetched) {
    const Listener daemon(Listener::kUdp);
    const Agent agent;
    agent.Report({.autoInstall = "no"});
    agent.Offer("Tessara Link Scanner", "4.2.8-1");
    const Applet applet;
    const Dialog dialog = applet.OpenDialog(kUpdatesIcon, kAvailable);
    EXPECT_TRUE(dialog.Text(kIntro).starts_with("The following Tessara Link software updates "));
    EXPECT_EQ(dialog.Text(kListLabel), "&Available Updates:");
    const RemoteList list = dialog.List();
    ExpectColumns(list, {"Name", "Version"});
    EXPECT_EQ(ColumnText(list, 0), "Tessara Link Scanner;");
    EXPECT_EQ(ColumnText(list, 1), "4.2.8-1;");
    TakePicture("available-updates");

    EXPECT_TRUE(applet.Shows(kUpdatesIcon));
    EXPECT_TRUE(dialog.Press(IDYES));
    EXPECT_EQ(daemon.Receive(kPromptLimitMs), FrameOf(7));
    EXPECT_TRUE(applet.AwaitNoIcon(kUpdatesIcon, kPromptLimitMs));
}

TEST(Updates, ChangeOfTheOfferIsNoticedAndNoFetchesNothing) {
    const Listener daemon(Listener::kUdp);
    const Agent agent;
    agent.Report({.autoInstall = "no"});
    agent.Offer("Tessara Link Scanner", "4.2.7-1");
    const Applet applet;
    ASSERT_TRUE(applet.AwaitIcon(kHealthIcon, kPassLimitMs));
    EXPECT_FALSE(applet.Shows(kUpdatesIcon)) << "the version that runs is no update";
    agent.Offer("Tessara Link Scanner", "4.10.0-0");
    EXPECT_TRUE(applet.OpenDialog(kUpdatesIcon, kAvailable).Press(IDNO));
    EXPECT_TRUE(applet.AwaitNoIcon(kUpdatesIcon, kPromptLimitMs));
    EXPECT_EQ(daemon.Receive(500), "");
}

TEST(Updates, FailedDownloadsAreListedSortedAndTriedAgain) {
    const Listener daemon(Listener::kUdp);
    const Agent agent;
    const Applet applet;
    agent.RecordDownload("middle.msi", kNotFound, 120);
    agent.RecordDownload("old.msi", kNotFound, 700);
    agent.RecordDownload("Zulu.msi", kNotFound, 60);
    agent.RecordDownload("alpha with a rather long name.msi", kNotFound, 180);
    // A change is news only once the applet watches the key, which nothing outside tells.
    const auto noticed = [&] {
        agent.RecordDownload("good.msi", 0);
        return applet.Shows(kDownloadsIcon);
    };
    EXPECT_TRUE(WaitFor(noticed, kPassLimitMs));
    const Dialog dialog = applet.OpenDialog(kDownloadsIcon, kFailed);
    EXPECT_EQ(dialog.Text(kListLabel), "&Failed Downloads:");
    const RemoteList list = dialog.List();
    ExpectColumns(list, {"File Name", "Time", "Reason"});
    EXPECT_TRUE(list.HasArrow(1));
    EXPECT_EQ(list.Selected(), -1);

    const char* const byName = "alpha with a rather long name.msi;middle.msi;Zulu.msi;";
    const char* const backwards = "Zulu.msi;middle.msi;alpha with a rather long name.msi;";
    const std::pair<int, const char*> clicks[] = {
        {0, byName}, {0, backwards}, {1, byName}, {1, backwards}};
    for (const auto& [column, names] : clicks) {
        list.ClickHeader(column);
        EXPECT_TRUE(list.HasArrow(column));
        EXPECT_FALSE(list.HasArrow(1 - column));
        EXPECT_EQ(ColumnText(list, 0), names);
    }
    TakePicture("failed-downloads");

    EXPECT_TRUE(dialog.Press(IDYES));
    EXPECT_EQ(daemon.Receive(kPromptLimitMs), FrameOf(7));
    EXPECT_TRUE(applet.AwaitNoIcon(kDownloadsIcon, kPromptLimitMs));
}

TEST(Updates, InstallationThatNeedsARebootAsksForIt) {
    const Agent agent;
    agent.RecordInstall(ProgramFolder() + "sample_applet.cpl", kRebootRequired);
    agent.RecordInstall(ProgramFolder() + "vh_tray.exe", kRebootRequired, 60);
    agent.RecordInstall("C:\\no such file.exe", 0);
    const Applet applet;
    const Dialog dialog = applet.OpenDialog(kInstalledIcon, kInstalled);
    EXPECT_EQ(
        dialog.Text(kIntro),
        "The following Tessara Link updates have been installed at the specified dates and with "
        "the specified results.\r\n\r\nThe update requires a reboot to finish.  Click Yes to "
        "reboot the system now, or No to reboot later.");
    EXPECT_EQ(dialog.Text(kListLabel), "&Installed Updates:");
    const RemoteList list = dialog.List();
    ASSERT_EQ(list.Rows(), 2) << "a file that is not there has no name to show";
    ExpectColumns(list, {"Name", "Version", "Installed on", "Result"});
    EXPECT_TRUE(list.HasArrow(2));
    EXPECT_EQ(list.Selected(), 0);
    list.ClickHeader(1);
    EXPECT_TRUE(list.HasArrow(1));
    EXPECT_EQ(ColumnText(list, 1), "4.2.7-1;4.2.8-1;");
    EXPECT_EQ(dialog.Text(IDYES), "Yes");
    EXPECT_EQ(dialog.Text(IDNO), "No");
    TakePicture("installed-updates");

    EXPECT_TRUE(dialog.Press(IDNO));
    EXPECT_TRUE(applet.AwaitNoIcon(kInstalledIcon, kPromptLimitMs));
    EXPECT_TRUE(applet.Running());
}

TEST(Updates, InstallationThatIsCompleteHasOneButtonInTheMiddle) {
    const Agent agent;
    agent.RecordInstall(ProgramFolder() + "vh_tray.exe", 0);
    const Applet applet;
    const Dialog dialog = applet.OpenDialog(kInstalledIcon, kInstalled);
    EXPECT_FALSE(dialog.Shows(IDNO));
    EXPECT_EQ(dialog.Text(IDYES), "OK");
    RECT whole, button;
    GetWindowRect(dialog.Window(), &whole);
    GetWindowRect(dialog.Control(IDYES), &button);
    EXPECT_EQ(button.left,
              whole.left + (whole.right - whole.left - button.right + button.left) / 2);
    EXPECT_TRUE(dialog.Close());
    EXPECT_TRUE(applet.AwaitNoIcon(kInstalledIcon, kPromptLimitMs));
}

}  // namespace
