// The three update events, each from the file or key of the daemon to its icon, its dialog and the
// command. Yes is not pressed where it would restart the machine.
#include <commctrl.h>

#include "Agent.h"
#include "Applet.h"
#include "Updates.h"

namespace {

using agent_sim::RecordDownload;
using agent_sim::RecordInstall;

TEST(Updates, EachEventHasItsIconDialogAndCommand) {
    constexpr int kList = 1000, kLabel = 65535;
    constexpr DWORD kNotFound = 0x80070002, kRebootRequired = 3010;
    const struct {
        TrayIcon icon;
        const char *caption, *label, *picture;
        LRESULT columns, rows, selected;
        int button;
        const char* frames;
        std::function<void()> record;
    } events[] = {
        {kUpdatesIcon, "Install Tessara Link Updates",
         "&Available Updates:", "picture available-updates", 2, 1, -1, IDYES, "TCP 7 ",
         [] {
             agent_sim::WriteOffer({"Tessara Link Scanner", "4.2.8-1", "third", "fourth"});
         }},
        {kDownloadsIcon, "Failed Tessara Link Update Downloads",
         "&Failed Downloads:", "picture failed-downloads", 3, 3, -1, IDYES, "TCP 7 ",
         [] {
             RecordDownload({"middle.msi", kNotFound, 120});
             RecordDownload({"old.msi", kNotFound, 700});
             RecordDownload({"Zulu.msi", kNotFound, 60});
             RecordDownload({"alpha with a rather long name.msi", kNotFound, 180});
         }},
        {kInstalledIcon, "Installed Tessara Link Updates",
         "&Installed Updates:", "picture installed-updates", 4, 2, 0, IDNO, "",
         [] {
             RecordInstall({ProgramFolder() + "sample_cpl.cpl", kRebootRequired, 0});
             RecordInstall({ProgramFolder() + "vh_tray.exe", kRebootRequired, 60});
             RecordInstall({"C:\\no such file.exe", 0, 0});  // has no name to show
         }},
    };
    Agent agent(true);
    agent.Report({.state = "high", .displayIcon = false});
    const Applet applet;
    for (const auto& event : events) {
        event.record();
        const HWND dialog = applet.OpenDialog(event.icon, event.caption);
        const HWND list = GetDlgItem(dialog, kList);
        const auto header = reinterpret_cast<HWND>(SendMessageA(list, LVM_GETHEADER, 0, 0));
        EXPECT_EQ(TextOf(GetDlgItem(dialog, kLabel)), event.label);
        EXPECT_EQ(SendMessageA(header, HDM_GETITEMCOUNT, 0, 0), event.columns);
        EXPECT_EQ(SendMessageA(list, LVM_GETITEMCOUNT, 0, 0), event.rows);
        EXPECT_EQ(SendMessageA(list, LVM_GETNEXTITEM, WPARAM(-1), LVNI_SELECTED), event.selected);
        EXPECT_EQ(TextOf(GetDlgItem(dialog, IDYES)), "Yes");
        AskAssistant(event.picture);
        EXPECT_TRUE(applet.Shows(event.icon)) << "while the dialog is open";
        EXPECT_TRUE(Press(dialog, event.button));
        EXPECT_EQ(agent.Receive(), event.frames) << event.caption;
        EXPECT_TRUE(applet.AwaitIcon(event.icon, false));
    }
}

}  // namespace
