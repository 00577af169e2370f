// The three dialogs behind the transient icons: texts, rows, columns, sorting, buttons, reboot.

#include "dialogs/UpdatesDialog.h"
#include "simulator/objects.h"
#include "story.h"

using testing::EndsWith, testing::StartsWith;

namespace {

constexpr char kDownloadFrame[] = "00 00 00 07 00 00 00 05 00 00 00 00 00";

class Dialogs : public Story {
protected:
    // Of the front dialog; without anything in it if there is none.
    static desktop::Control ControlOf(int id) {
        const auto dialog = Front();
        return dialog.Find(id) ? *dialog.Find(id) : desktop::Control{};
    }
    static std::string TextOf(int control) { return ControlOf(control).text; }
    static desktop::List FrontList() {
        const auto dialog = Front();
        return dialog.FirstList() ? *dialog.FirstList() : desktop::List{};
    }
    static desktop::Column FrontColumn(std::size_t at) { return FrontList().columns.at(at); }
    // The rows with their cells joined by '|'.
    static std::vector<std::string> FrontRows() {
        std::vector<std::string> rows;
        for (const auto& cells : FrontList().rows) {
            std::string& row = rows.emplace_back();
            for (const std::string& cell : cells) row += (row.empty() ? "" : "|") + cell;
        }
        return rows;
    }
    static void PostToFront(int control, UINT message, WPARAM wParam, const void* data = nullptr) {
        const HWND dialog = Front().window;
        PostMessageA(control ? GetDlgItem(dialog, control) : dialog, message, wParam,
                     reinterpret_cast<LPARAM>(data));
        desktop::Advance(0ms);
    }
    // As another program of the desktop may do it. The list owns the object; if an injected fault
    // refuses it, the object stays reachable and is not reported as a leak.
    static void Attach(int row, void* object) {
        static auto& attached = *new std::vector<const void*>;  // outlives the leak check
        attached.push_back(object);
        LVITEMA item{};
        item.mask = LVIF_PARAM;
        item.iItem = row;
        item.lParam = reinterpret_cast<LPARAM>(object);
        PostToFront(IDC_RESULT_LIST, LVM_SETITEMA, 0, &item);
    }
};

bool g_rowObjectIsGone = false;

struct RowObject : CRowObject {
    ~RowObject() override { g_rowObjectIsGone = true; }
};

// The dialog reads the offer again and compares its version. Its columns are as wide as the title
// or, with 15 pixels more, the widest cell, and 15 more; a character has 6.
TEST_F(Dialogs, TheOfferMayHaveChangedSinceItWasAnnounced) {
    const struct {
        const char *name, *version;
        std::size_t rows;
        int nameWidth, versionWidth;
    } offers[] = {{"Agent", "4.2.8-1", 1, 30 + 30, 42 + 30},
                  {"A", "4.2.8-1", 1, 24 + 15, 42 + 30},
                  {"", "5-0-0-0.0", 1, 24 + 15, 54 + 30},
                  {"Agent", "4.2.7-1", 0, 24 + 15, 42 + 15},
                  {nullptr, nullptr, 0, 24 + 15, 42 + 15}};
    StartWith({});
    for (const auto& [name, version, rows, nameWidth, versionWidth] : offers) {
        Offer("Agent", "4.2.7-2");
        Pass();
        std::filesystem::remove(m_agentDirectory / HLX_SWCACHE_FILE);
        if (name) Offer(name, version);
        ASSERT_TRUE(desktop::DoubleClick(TRAY_ID_UPDATES));
        EXPECT_EQ(Front().caption, "Install Tessara Link Updates");
        EXPECT_EQ(TextOf(IDC_INTRO),
                  "The following Tessara Link software updates are available for download.  Click "
                  "Yes to download and install them now; click No if you do not wish to install "
                  "the update at this time.");
        EXPECT_EQ(TextOf(IDC_LIST_LABEL), "Available Updates:");
        std::vector<std::vector<std::string>> cells;
        if (rows) cells = {{name, version}};
        ASSERT_EQ(FrontList().rows, cells);
        EXPECT_EQ(FrontList().exStyle, 0x10020u);
        EXPECT_TRUE(FrontList().redraws);
        EXPECT_EQ(FrontColumn(0).title + FrontColumn(1).title, "NameVersion");
        EXPECT_EQ(Tray().size(), 2u) << "while the dialog is open";
        EXPECT_EQ(FrontColumn(0).width, nameWidth);
        EXPECT_EQ(FrontColumn(1).width, versionWidth);
        if (rows) Attach(0, new RowObject);
        if (rows)
            PostToFront(0, WM_COMMAND, IDOK);
        else
            desktop::PressKey(VK_RETURN);
        EXPECT_THAT(Frames(), ElementsAre(kDownloadFrame)) << "id 1, and Yes by default";
        EXPECT_THAT(Tray(), ElementsAre(TRAY_ID_HEALTH));
        EXPECT_EQ(std::exchange(g_rowObjectIsGone, false), rows == 1);
    }
}

TEST_F(Dialogs, FailedDownloadsListsTheLatestBatch) {
    setenv("TZ", "IST-5:30", 1);
    StartWith({});
    Report(HLX_DOWNLOAD_RESULTS_KEY, "old", kFailed, 601s);
    Report(HLX_DOWNLOAD_RESULTS_KEY, "edge", kFailed, 600s);
    const std::string record = Record(kFailed, 0s);
    WriteValue(HLX_DOWNLOAD_RESULTS_KEY, "short", REG_BINARY, record.substr(0, 8));
    WriteValue(HLX_DOWNLOAD_RESULTS_KEY, "long", REG_BINARY, record + record);
    WriteValue(HLX_DOWNLOAD_RESULTS_KEY, "text", REG_SZ, record);
    Report(HLX_DOWNLOAD_RESULTS_KEY, "good", 0);
    Report(HLX_DOWNLOAD_RESULTS_KEY, "timeless", kFailed, std::nullopt);
    Report(HLX_DOWNLOAD_RESULTS_KEY, "unknown", 0xC1230001);
    desktop::Advance(11min);
    desktop::DoubleClick(TRAY_ID_DOWNLOADS);
    EXPECT_EQ(Front().caption, "Failed Tessara Link Update Downloads");
    EXPECT_EQ(TextOf(IDC_LIST_LABEL), "Failed Downloads:");
    EXPECT_EQ(TextOf(IDC_INTRO),
              "The followingTessara Link update files failed to download at the specified times "
              "for the specified reasons.\r\n\r\nClick Yes to attempt another download, or click "
              "No to continue.");
    const auto list = FrontList();
    EXPECT_THAT(FrontRows(),
                ElementsAre("edge|11/18/2026 11:35 AM|The resource on the server was not found.  ",
                            StartsWith("timeless|11/18/2026 11:56 AM|"),  // now
                            EndsWith("|Result code 0xC1230001")));
    EXPECT_EQ(list.selected, std::nullopt);
    EXPECT_EQ(FrontColumn(1).title, "Time");
    EXPECT_EQ(FrontColumn(1).arrow, desktop::Arrow::kDown);
    desktop::Press("Yes");
    EXPECT_THAT(Frames(), ElementsAre(kDownloadFrame));
}

TEST_F(Dialogs, AMissingKeyAndATextThatCannotBeSetLeaveTheListEmpty) {
    StartWith({});
    Report(HLX_DOWNLOAD_RESULTS_KEY, "f", kFailed);
    simulator::FailNext("RegOpenKeyExA", 1, ERROR_FILE_NOT_FOUND);
    desktop::DoubleClick(TRAY_ID_DOWNLOADS);
    EXPECT_THAT(FrontRows(), IsEmpty());
    EXPECT_EQ(FrontColumn(1).arrow, desktop::Arrow::kNone);
    EXPECT_EQ(desktop::Beeps(), 0);
    desktop::CloseWindow();
    Report(HLX_DOWNLOAD_RESULTS_KEY, "f", kFailed);
    simulator::FailNext("SetDlgItemTextA", 1, ERROR_NOT_ENOUGH_MEMORY, IDC_LIST_LABEL);
    desktop::DoubleClick(TRAY_ID_DOWNLOADS);
    EXPECT_EQ(desktop::Beeps(), 1);
    EXPECT_THAT(FrontList().columns, IsEmpty());
}

TEST_F(Dialogs, AClickOnAHeaderSorts) {
    StartWith({});
    Report(HLX_DOWNLOAD_RESULTS_KEY, "b", 0x80000002, 30s);
    Report(HLX_DOWNLOAD_RESULTS_KEY, "c", 0x80000001, 20s);
    Report(HLX_DOWNLOAD_RESULTS_KEY, "A", 0xFFFFFFFF, 10s);
    simulator::FailNext("LVM_SETITEMA", 1, 0, 0);
    desktop::DoubleClick(TRAY_ID_DOWNLOADS);
    const auto order = [](std::size_t column) {
        std::string names;
        for (const auto& row : FrontList().rows) names += row.at(0);
        return names + (FrontColumn(column).arrow == desktop::Arrow::kUp ? " up" : " down");
    };
    EXPECT_EQ(order(1), "Abc down") << "the order of the key";
    desktop::ClickHeader(1);
    EXPECT_EQ(order(1), "Abc up") << "A row without a record is the first";
    auto* const record = new UpdateResultRecord;
    std::memcpy(record, Record(0xFFFFFFFF, 10s).data(), sizeof *record);
    Attach(0, record);
    const std::pair<int, const char*> clicks[] = {{1, "Acb down"}, {1, "bcA up"}, {0, "Abc up"},
                                                  {0, "cbA down"}, {2, "cbA up"}, {2, "Abc down"},
                                                  {0, "Abc up"}};
    for (const auto& [column, result] : clicks) {
        ASSERT_TRUE(desktop::ClickHeader(column));
        EXPECT_EQ(order(static_cast<std::size_t>(column)), result);
    }
    EXPECT_EQ(desktop::WaitCursors(), 8);
    desktop::ClickHeader(0, nullptr, true);
    EXPECT_EQ(order(0), "Abc up") << "the right button";
    simulator::FailNext("LVM_SORTITEMS", 1, 0);
    desktop::ClickHeader(0);
    EXPECT_EQ(order(0), "Abc up") << "a refused sort changes nothing";
}

// Whether the arrow in the column's picture has one corner above the two others.
bool PointsUp(const desktop::Column& column) {
    return column.drawing.size() == 3 && column.drawing[0].y < column.drawing[1].y &&
           column.drawing[1].y == column.drawing[2].y;
}

TEST_F(Dialogs, AHeaderThatDrawsNoArrowsGetsAPicture) {
    StartWith({});
    Report(HLX_DOWNLOAD_RESULTS_KEY, "a", kFailed);
    simulator::FailNext("GetProcAddress", 1, ERROR_PROC_NOT_FOUND);
    desktop::DoubleClick(TRAY_ID_DOWNLOADS);
    EXPECT_FALSE(PointsUp(FrontColumn(1)));
    desktop::ClickHeader(1);
    const HBITMAP up = FrontColumn(1).bitmap;
    EXPECT_TRUE(PointsUp(FrontColumn(1)));
    desktop::ClickHeader(0);
    EXPECT_EQ(FrontColumn(1).bitmap, nullptr);
    EXPECT_EQ(FrontColumn(0).bitmap, up);
    EXPECT_EQ(FrontColumn(0).arrow, desktop::Arrow::kNone);
    PostToFront(IDC_RESULT_LIST, WM_SETTINGCHANGE, SPI_SETNONCLIENTMETRICS + 1);
    EXPECT_EQ(FrontColumn(0).bitmap, up);
    PostToFront(IDC_RESULT_LIST, WM_SETTINGCHANGE, SPI_SETNONCLIENTMETRICS);
    EXPECT_NE(FrontColumn(0).bitmap, up);
    EXPECT_TRUE(PointsUp(FrontColumn(0)));
    EXPECT_EQ(simulator::LiveObjects()["bitmap"], 2u);
}

class InstalledUpdates : public Dialogs {
protected:
    // The product of what has no version resource.
    InstalledUpdates() {
        constexpr char kComponent[] =
            R"(SOFTWARE\Installer Simulation\Components\{7F3A9C14-2E6B-4D05-B8A2-61C4E97D3F10})";
        constexpr char kProduct[] =
            R"(SOFTWARE\Installer Simulation\Products\{00000000-0000-0000-0000-000000000001})";
        WriteText(kComponent, "Product", "{00000000-0000-0000-0000-000000000001}");
        WriteText(kProduct, "InstalledProductName", "Universal Agent");
        WriteText(kProduct, "VersionString", "10.0");
    }
    void Open() {
        StartWith({});
        ASSERT_TRUE(desktop::DoubleClick(TRAY_ID_INSTALLED));
    }
};

TEST_F(InstalledUpdates, NamesTheProductOfEachFile) {
    Report(HLX_INSTALL_RESULTS_KEY, OwnFile(), 0, 0s);
    Report(HLX_INSTALL_RESULTS_KEY, "gone.dll", 1603, 60s);
    WriteValue(HLX_INSTALL_RESULTS_KEY, "of any type", REG_SZ, std::string(12, '\0'));
    WriteValue(HLX_INSTALL_RESULTS_KEY, "too long: ends the scan", REG_BINARY,
               std::string(13, '\0'));
    Report(HLX_INSTALL_RESULTS_KEY, "unread", 0);
    // Without its translation table the texts of the file are those in US English.
    simulator::FailNext("VerQueryValueA", 1, ERROR_RESOURCE_TYPE_NOT_FOUND, simulator::kAnyDetail,
                        1);
    Open();
    EXPECT_EQ(Front().caption, "Installed Tessara Link Updates");
    EXPECT_EQ(TextOf(IDC_LIST_LABEL), "Installed Updates:");
    EXPECT_EQ(TextOf(IDC_INTRO),
              "The following Tessara Link updates have been installed at the specified dates and "
              "with the specified results.");
    EXPECT_THAT(FrontRows(), ElementsAre(StartsWith("Tessara Link|4.2.7-1|"),
                                         StartsWith("Universal Agent|10.0|"), testing::_));
    EXPECT_EQ(FrontList().rows.at(2).at(2), "11/18/2026 6:15 AM") << "the current time";
    EXPECT_EQ(FrontList().selected, 0);
    EXPECT_EQ(FrontColumn(2).arrow, desktop::Arrow::kDown);
    // One button, in the middle.
    const auto dialog = Front();
    const RECT ok = ControlOf(IDYES).place;
    EXPECT_EQ(TextOf(IDYES), "OK");
    EXPECT_FALSE(ControlOf(IDNO).visible);
    EXPECT_FALSE(ControlOf(IDNO).enabled);
    EXPECT_NEAR(ok.left, (dialog.place.right - dialog.place.left) - ok.right, 8);
    desktop::Press("OK");
    EXPECT_THAT(desktop::Reboots(), IsEmpty());
    EXPECT_THAT(Frames(), IsEmpty());
}

TEST_F(InstalledUpdates, FilesWithoutAProductGetNoRow) {
    simulator::FailNext("MsiGetProductCodeA", 1, ERROR_UNKNOWN_COMPONENT);
    Report(HLX_INSTALL_RESULTS_KEY, "gone.dll", 3010);
    // A product without a name; the installer is not asked.
    simulator::FailNext("VerQueryValueA", 1, ERROR_RESOURCE_TYPE_NOT_FOUND, simulator::kAnyDetail,
                        2);
    Report(HLX_INSTALL_RESULTS_KEY, OwnFile(), 3010);
    Open();
    EXPECT_THAT(FrontRows(), IsEmpty());
    EXPECT_EQ(FrontColumn(2).arrow, desktop::Arrow::kDown);
    EXPECT_EQ(TextOf(IDYES), "OK");
}

TEST_F(InstalledUpdates, AClickOnAHeaderSorts) {
    Report(HLX_INSTALL_RESULTS_KEY, OwnFile(), 0x80070002, 10s);
    Report(HLX_INSTALL_RESULTS_KEY, SAMPLE_CPL, 2, 20s);
    Report(HLX_INSTALL_RESULTS_KEY, "gone.dll", 1603, 30s);
    Open();
    const char* const orders[] = {"4.2.7-1 4.2.8-1 10.0 ", "10.0 4.2.7-1 4.2.8-1 ",
                                  "10.0 4.2.8-1 4.2.7-1 ", "4.2.8-1 10.0 4.2.7-1 "};
    for (int column = 0; const char* const order : orders) {
        desktop::ClickHeader(column++);
        std::string versions;
        for (const auto& row : FrontList().rows) versions += row.at(1) + " ";
        EXPECT_EQ(versions, order);
    }
}

TEST_F(InstalledUpdates, OnlyYesRebootsAndOnlyForTheFirstRow) {
    const struct {
        DWORD firstResult, secondResult;
        WPARAM answer;
        bool isOffered;
        const char* refused = nullptr;
    } cases[] = {{3010, 0, IDYES, true},
                 {1641, 0, IDNO, true},
                 {3010, 0, IDOK, true},
                 {3011, 0, IDCANCEL, true},
                 {0, 3010, IDYES, false},
                 {3010, 0, IDYES, false, "OpenProcessToken"},
                 {3010, 0, IDYES, false, "AdjustTokenPrivileges"},
                 {3010, 0, IDYES, false, "SetDlgItemTextA"},
                 // Nothing to adjust is no failure.
                 {3010, 0, IDYES, true, "LookupPrivilegeValueA"}};
    StartWith({});
    for (const auto& each : cases) {
        SCOPED_TRACE(&each - cases);
        Report(HLX_INSTALL_RESULTS_KEY, "1", each.firstResult);
        Report(HLX_INSTALL_RESULTS_KEY, "2", each.secondResult);
        if (each.refused) simulator::FailNext(each.refused, 1, ERROR_ACCESS_DENIED);
        desktop::DoubleClick(TRAY_ID_INSTALLED);
        EXPECT_EQ(TextOf(IDYES), each.isOffered ? "Yes" : "OK");
        EXPECT_EQ(ControlOf(IDNO).visible, each.isOffered);
        EXPECT_EQ(TextOf(IDC_INTRO).ends_with(
                      "results.\r\n\r\nThe update requires a reboot to finish.  Click Yes to "
                      "reboot the system now, or No to reboot later."),
                  each.isOffered);
        PostToFront(0, WM_COMMAND, each.answer);
        EXPECT_THAT(desktop::Dialogs(), IsEmpty());
        EXPECT_EQ(desktop::Reboots().size(), each.isOffered && each.answer == IDYES ? 1u : 0u);
        for (const auto& reboot : desktop::Reboots()) {
            EXPECT_EQ(reboot.flags, 6u);
            EXPECT_EQ(reboot.reason, 0x80040003u);
        }
        desktop::Forget();
    }
}

}  // namespace
