// The three dialogs behind the transient icons: texts, rows, columns, sorting, buttons, reboot.
#include <malloc.h>

#include <functional>

#include "story.h"

using testing::EndsWith;
using testing::StartsWith;

namespace {

constexpr DWORD kFailed = 0x800C0005;
constexpr char kDownloadFrame[] = "00 00 00 07 00 00 00 05 00 00 00 00 00";

class Dialogs : public Story {
protected:
    static std::string TextOf(int control) { return Front().Find(control)->text; }
    static desktop::List FrontList() { return *Front().FirstList(); }
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
};

TEST_F(Dialogs, AvailableUpdates) {
    Offer("Agent", "4.2.7-2");
    StartWith({});
    ASSERT_TRUE(desktop::DoubleClick(TRAY_ID_UPDATES));
    EXPECT_EQ(Front().caption, "Install Tessara Link Updates");
    EXPECT_EQ(TextOf(IDC_INTRO),
              "The following Tessara Link software updates are available for download.  Click Yes "
              "to download and install them now; click No if you do not wish to install the update "
              "at this time.");
    EXPECT_EQ(TextOf(IDC_LIST_LABEL), "Available Updates:");
    EXPECT_THAT(FrontRows(), ElementsAre("Agent|4.2.7-2"));
    EXPECT_EQ(FrontList().exStyle, 0x10020u);
    EXPECT_TRUE(FrontList().redraws);
    // Pixels by the width rule of the desktop's list, 15 twice.
    EXPECT_EQ(FrontColumn(0).title, "Name");
    EXPECT_GT(FrontColumn(1).width, 30);
    EXPECT_EQ(FrontColumn(0).width - 30, (FrontColumn(1).width - 30) * 5 / 7)
        << "5 and 7 characters";
    EXPECT_THAT(Tray(), ElementsAre(TRAY_ID_HEALTH, TRAY_ID_UPDATES)) << "stays while it is open";
    ASSERT_TRUE(desktop::Press("Yes"));
    EXPECT_THAT(Frames(), ElementsAre(kDownloadFrame));
    EXPECT_THAT(Tray(), ElementsAre(TRAY_ID_HEALTH));
}

TEST_F(Dialogs, AnOfferThatIsGoneLeavesAnEmptyListInWhichYesStillAsks) {
    Offer("Agent", "4.2.7-2");
    StartWith({});
    std::filesystem::remove(m_agentDirectory / "swcache");
    desktop::DoubleClick(TRAY_ID_UPDATES);
    EXPECT_THAT(FrontRows(), IsEmpty());
    desktop::PressKey(VK_RETURN);
    EXPECT_THAT(Frames(), ElementsAre(kDownloadFrame)) << "Yes is the default button";
}

TEST_F(Dialogs, NoEscapeAndTheCloseBoxSendNothing) {
    const std::function<desktop::Outcome()> ways[] = {[] { return desktop::Press("No"); },
                                                      [] { return desktop::PressKey(VK_ESCAPE); },
                                                      [] { return desktop::CloseWindow(); }};
    StartWith({});
    for (const auto& way : ways) {
        Report(kDownloadResultsKey, "f", kFailed);
        desktop::DoubleClick(TRAY_ID_DOWNLOADS);
        ASSERT_TRUE(way());
        EXPECT_THAT(desktop::Dialogs(), IsEmpty());
    }
    EXPECT_THAT(Frames(), IsEmpty());
}

TEST_F(Dialogs, FailedDownloadsListsTheLatestBatch) {
    StartWith({});
    Report(kDownloadResultsKey, "old", kFailed, 601s);
    Report(kDownloadResultsKey, "edge", kFailed, 600s);
    Report(kDownloadResultsKey, "good", 0);
    WriteValue(kDownloadResultsKey, "long", REG_BINARY, std::string(13, '\xFF'));
    WriteValue(kDownloadResultsKey, "text", REG_SZ, std::string(12, '\xFF'));
    Report(kDownloadResultsKey, "timeless", kFailed, std::nullopt);
    Report(kDownloadResultsKey, "unknown", 0xC1230001);
    desktop::Advance(std::chrono::hours(72));
    desktop::DoubleClick(TRAY_ID_DOWNLOADS);
    EXPECT_EQ(Front().caption, "Failed Tessara Link Update Downloads");
    EXPECT_EQ(TextOf(IDC_LIST_LABEL), "Failed Downloads:");
    EXPECT_EQ(TextOf(IDC_INTRO),
              "The followingTessara Link update files failed to download at the specified times "
              "for the specified reasons.\r\n\r\nClick Yes to attempt another download, or click "
              "No to continue.");
    const auto list = FrontList();
    EXPECT_THAT(FrontRows(), ElementsAre(StartsWith("edge|"), StartsWith("timeless|"),
                                         EndsWith("|Result code 0xC1230001")));
    EXPECT_THAT(list.rows[0][1], testing::Not(testing::Eq(list.rows[1][1])))
        << "recorded then, and now for want of a time";
    EXPECT_EQ(list.selected, std::nullopt);
    EXPECT_EQ(FrontColumn(1).title, "Time");
    EXPECT_EQ(FrontColumn(1).arrow, desktop::Arrow::kDown);
    desktop::Press("Yes");
    EXPECT_THAT(Frames(), ElementsAre(kDownloadFrame));
}

TEST_F(Dialogs, AMissingKeyAndATextThatCannotBeSetLeaveTheListEmpty) {
    StartWith({});
    Report(kDownloadResultsKey, "f", kFailed);
    machine::FailNext("RegOpenKeyExA", 1, ERROR_FILE_NOT_FOUND);
    desktop::DoubleClick(TRAY_ID_DOWNLOADS);
    EXPECT_THAT(FrontRows(), IsEmpty());
    EXPECT_EQ(FrontColumn(1).arrow, desktop::Arrow::kNone);
    EXPECT_EQ(desktop::Beeps(), 0);
    desktop::CloseWindow();
    Report(kDownloadResultsKey, "f", kFailed);
    machine::FailNext("SetDlgItemTextA", 1, ERROR_NOT_ENOUGH_MEMORY, IDC_LIST_LABEL);
    desktop::DoubleClick(TRAY_ID_DOWNLOADS);
    EXPECT_EQ(desktop::Beeps(), 1);
    EXPECT_THAT(FrontList().columns, IsEmpty());
}

TEST_F(Dialogs, AClickOnAHeaderSorts) {
    StartWith({});
    Report(kDownloadResultsKey, "b", 0x80000003, 20s);
    Report(kDownloadResultsKey, "A", 0x80000001, 30s);
    Report(kDownloadResultsKey, "c", 0xFFFFFFFF, 10s);
    desktop::DoubleClick(TRAY_ID_DOWNLOADS);
    const auto order = [](std::size_t column) {
        std::string names;
        for (const auto& row : FrontList().rows) names += row.at(0);
        return names + (FrontColumn(column).arrow == desktop::Arrow::kUp ? " up" : " down");
    };
    EXPECT_EQ(order(1), "Abc down") << "the order of the key";
    const std::pair<int, const char*> clicks[] = {{1, "Abc up"},   {1, "cbA down"}, {0, "Abc up"},
                                                  {0, "cbA down"}, {2, "Abc up"},   {2, "cbA down"},
                                                  {0, "Abc up"}};
    for (const auto& [column, result] : clicks) {
        ASSERT_TRUE(desktop::ClickHeader(column));
        EXPECT_EQ(order(static_cast<std::size_t>(column)), result);
    }
    EXPECT_EQ(desktop::WaitCursors(), 7);
    machine::FailNext("LVM_SORTITEMS", 1, 0);
    desktop::ClickHeader(0);
    EXPECT_EQ(order(0), "Abc up") << "a refused sort changes nothing";
}

// How many pixels of a row of the picture the arrow covers.
int Breadth(HBITMAP picture, int row) {
    const HDC canvas = CreateCompatibleDC(nullptr);
    SelectObject(canvas, picture);
    int inked = 0;
    for (int x = 0; x < 16; ++x) inked += GetPixel(canvas, x, row) == GetSysColor(COLOR_BTNSHADOW);
    DeleteDC(canvas);
    return inked;
}

TEST_F(Dialogs, AHeaderThatDrawsNoArrowsGetsAPicture) {
    StartWith({});
    Report(kDownloadResultsKey, "a", kFailed);
    machine::FailNext("GetProcAddress", 1, ERROR_PROC_NOT_FOUND);
    desktop::DoubleClick(TRAY_ID_DOWNLOADS);
    const HBITMAP down = FrontColumn(1).bitmap;
    EXPECT_GT(Breadth(down, 5), Breadth(down, 8));
    desktop::ClickHeader(1);
    const HBITMAP up = FrontColumn(1).bitmap;
    EXPECT_LT(Breadth(up, 5), Breadth(up, 8));
    desktop::ClickHeader(0);
    EXPECT_EQ(FrontColumn(1).bitmap, nullptr);
    EXPECT_EQ(FrontColumn(0).bitmap, up);
    EXPECT_EQ(FrontColumn(0).arrow, desktop::Arrow::kNone);
}

TEST_F(Dialogs, SortsByTheFirst31Characters) {
    const std::string head(31, 'x');
    StartWith({});
    Report(kDownloadResultsKey, head + "2", kFailed);
    Report(kDownloadResultsKey, head + "1", kFailed);
    desktop::DoubleClick(TRAY_ID_DOWNLOADS);
    desktop::ClickHeader(0);
    desktop::ClickHeader(0);
    EXPECT_EQ(FrontList().rows[0][0], head + "1") << "equal: the order stays";
}

class InstalledUpdates : public Dialogs {
protected:
    // The program itself is a file with a version resource.
    static std::string OwnFile() {
        char path[MAX_PATH];
        GetModuleFileNameA(nullptr, path, MAX_PATH);
        return path;
    }
    // The product of what has no version resource.
    InstalledUpdates() {
        constexpr char kComponent[] =
            R"(SOFTWARE\Installer Simulation\Components\{7F3A9C14-2E6B-4D05-B8A2-61C4E97D3F10})";
        constexpr char kProduct[] =
            R"(SOFTWARE\Installer Simulation\Products\{00000000-0000-0000-0000-000000000001})";
        WriteText(kComponent, "Product", "{00000000-0000-0000-0000-000000000001}");
        WriteText(kProduct, "InstalledProductName", "Installed Agent");
        WriteText(kProduct, "VersionString", "9.9");
    }
    void Open() {
        StartWith({});
        ASSERT_TRUE(desktop::DoubleClick(TRAY_ID_INSTALLED));
    }
    static void OpenWithReboot() {
        Report(kInstallResultsKey, "x", 3010);
        ASSERT_TRUE(desktop::DoubleClick(TRAY_ID_INSTALLED));
    }
};

TEST_F(InstalledUpdates, NamesTheProductOfEachFile) {
    Report(kInstallResultsKey, OwnFile(), 0, 0s);
    Report(kInstallResultsKey, "gone.dll", 1603, 60s);
    WriteValue(kInstallResultsKey, "of any type", REG_SZ, std::string(12, '\0'));
    Open();
    EXPECT_EQ(Front().caption, "Installed Tessara Link Updates");
    EXPECT_EQ(TextOf(IDC_LIST_LABEL), "Installed Updates:");
    EXPECT_EQ(TextOf(IDC_INTRO),
              "The following Tessara Link updates have been installed at the specified dates and "
              "with the specified results.");
    EXPECT_THAT(FrontRows(), ElementsAre(StartsWith("Tessara Link|4.2.7-1|"),
                                         StartsWith("Installed Agent|9.9|"), testing::_));
    EXPECT_NE(FrontList().rows[2][2], "") << "now, for want of a time";
    EXPECT_EQ(FrontList().selected, 0);
    EXPECT_EQ(FrontColumn(2).arrow, desktop::Arrow::kDown);
    // One button, in the middle.
    const auto dialog = Front();
    const RECT ok = dialog.Find(IDYES)->place;
    EXPECT_EQ(dialog.Find(IDYES)->text, "OK");
    EXPECT_FALSE(dialog.Find(IDNO)->visible);
    EXPECT_FALSE(dialog.Find(IDNO)->enabled);
    EXPECT_NEAR(ok.left, (dialog.place.right - dialog.place.left) - ok.right, 8);
    desktop::Press("OK");
    EXPECT_THAT(desktop::Reboots(), IsEmpty());
    EXPECT_THAT(Frames(), IsEmpty());
}

TEST_F(InstalledUpdates, FilesThatNobodyKnowsGetNoRow) {
    RegDeleteTreeA(HKEY_LOCAL_MACHINE, R"(SOFTWARE\Installer Simulation)");
    Report(kInstallResultsKey, "gone.dll", 3010);
    Open();
    EXPECT_THAT(FrontRows(), IsEmpty());
    EXPECT_EQ(FrontColumn(2).arrow, desktop::Arrow::kDown);
    EXPECT_EQ(TextOf(IDYES), "OK");
}

TEST_F(InstalledUpdates, AValueThatDoesNotFitEndsTheScan) {
    Report(kInstallResultsKey, "a first", 0);
    WriteValue(kInstallResultsKey, "b long", REG_BINARY, std::string(13, '\0'));
    Report(kInstallResultsKey, "c behind", 0);
    Open();
    EXPECT_EQ(FrontRows().size(), 1u);
}

TEST_F(InstalledUpdates, TheFirstRowAlonePutsTheRebootQuestion) {
    const struct {
        DWORD firstResult, secondResult;
        bool isPut;
    } cases[] = {{1641, 0, true}, {3010, 0, true}, {3011, 0, true}, {0, 3010, false}};
    StartWith({});
    for (const auto& each : cases) {
        Report(kInstallResultsKey, "1", each.firstResult);
        Report(kInstallResultsKey, "2", each.secondResult);
        desktop::DoubleClick(TRAY_ID_INSTALLED);
        EXPECT_EQ(TextOf(IDYES), each.isPut ? "Yes" : "OK") << each.firstResult;
        EXPECT_EQ(Front().Find(IDNO)->visible, each.isPut);
        EXPECT_EQ(TextOf(IDC_INTRO).ends_with(
                      "results.\r\n\r\nThe update requires a reboot to finish.  Click Yes to "
                      "reboot the system now, or No to reboot later."),
                  each.isPut);
        desktop::CloseWindow();
    }
}

TEST_F(InstalledUpdates, OnlyYesReboots) {
    StartWith({});
    OpenWithReboot();
    desktop::Press("No");
    OpenWithReboot();
    PostMessageA(Front().window, WM_COMMAND, IDOK, 0);
    desktop::Advance(0ms);
    EXPECT_THAT(desktop::Dialogs(), IsEmpty()) << "id 1 only closes";
    OpenWithReboot();
    desktop::CloseWindow();
    EXPECT_THAT(desktop::Reboots(), IsEmpty());
    OpenWithReboot();
    desktop::Press("Yes");
    ASSERT_EQ(desktop::Reboots().size(), 1u);
    EXPECT_EQ(desktop::Reboots()[0].flags, 6u);
    EXPECT_EQ(desktop::Reboots()[0].reason, 0x80040003u);
}

TEST_F(InstalledUpdates, WithoutTheRightToShutDownNoRebootIsOffered) {
    StartWith({});
    for (const auto& [refused, button] :
         {std::pair{"OpenProcessToken", "OK"},
          {"AdjustTokenPrivileges", "OK"},
          {"LookupPrivilegeValueA", "Yes"}}) {  // nothing to adjust is no failure
        machine::FailNext(refused, 1, ERROR_ACCESS_DENIED);
        OpenWithReboot();
        EXPECT_EQ(TextOf(IDYES), button) << refused;
        desktop::CloseWindow();
    }
}

// Values of every size and type, and names of any bytes.
TEST_F(InstalledUpdates, NoValueHarmsAReader) {
    std::string everyByte;
    for (int byte = 1; byte < 256; ++byte) everyByte += static_cast<char>(byte);
    StartWith({});
    for (const char* const key : {kInstallResultsKey, kDownloadResultsKey}) {
        for (std::size_t size = 0; size <= 64; ++size)
            WriteValue(key, "size " + std::to_string(size), static_cast<DWORD>(size % 12),
                       std::string(size, static_cast<char>(0x80 + size)));
        for (const std::string& name : {std::string(), everyByte, std::string(9000, 'n')})
            WriteValue(key, name, REG_BINARY, std::string(12, '\xFF'));
    }
    Report(kInstallResultsKey, "good", 0);
    Report(kDownloadResultsKey, "good", kFailed);
    ASSERT_THAT(Tray(), ElementsAre(TRAY_ID_HEALTH, TRAY_ID_INSTALLED, TRAY_ID_DOWNLOADS));
    for (const UINT icon : {TRAY_ID_INSTALLED, TRAY_ID_DOWNLOADS}) {
        ASSERT_TRUE(desktop::DoubleClick(icon));
        for (const int column : {0, 1, 2}) desktop::ClickHeader(column);
        EXPECT_FALSE(FrontRows().empty());
        ASSERT_TRUE(desktop::CloseWindow());
    }
    // A key that goes while it is being read.
    Report(kDownloadResultsKey, "again", kFailed);
    machine::FailNext("RegQueryValueExA", machine::kEveryCall, ERROR_KEY_DELETED);
    ASSERT_TRUE(desktop::DoubleClick(TRAY_ID_DOWNLOADS));
    EXPECT_TRUE(FrontRows().empty());
    desktop::CloseWindow();
    machine::ClearFaults();
    ASSERT_EQ(RegDeleteTreeA(HKEY_LOCAL_MACHINE, kDownloadResultsKey), ERROR_SUCCESS);
    desktop::Advance(2s);
    Report(kDownloadResultsKey, "anew", kFailed);
    desktop::Advance(2s);
    Report(kDownloadResultsKey, "and seen", kFailed);
    EXPECT_EQ(Tip(TRAY_ID_DOWNLOADS),
              "Error downloading one or more Tessara Link software update files.");
}

TEST_F(Dialogs, TenThousandRowsSortAtOnceAndLeaveNothingBehind) {
    constexpr int kRows = 10'000;
    for (int i = 0; i < kRows; ++i)
        Report(kDownloadResultsKey, "file" + std::to_string(i * 7919 % kRows), kFailed);
    StartWith({});
    const auto openAndClose = [] {
        Report(kDownloadResultsKey, "again", kFailed);
        desktop::DoubleClick(TRAY_ID_DOWNLOADS);
        const auto begin = std::chrono::steady_clock::now();
        desktop::ClickHeader(0);
        const auto span = std::chrono::steady_clock::now() - begin;
        RecordProperty("sort_ms", static_cast<int>(span / 1ms));
        EXPECT_EQ(FrontList().rows.size(), kRows + 1u);
        desktop::CloseWindow();
        desktop::Forget();
        return span;
    };
    openAndClose();
    const auto before = mallinfo2().uordblks;
    const auto span = openAndClose();
    const auto after = mallinfo2().uordblks;
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    EXPECT_LT(span, 500ms);
    EXPECT_NEAR(static_cast<double>(after), static_cast<double>(before), 64 * 1024);
#else
    (void)span, (void)before, (void)after;  // a sanitizer has costs of its own
#endif
}

}  // namespace
