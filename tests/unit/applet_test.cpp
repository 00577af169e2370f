// Parts of the applet that need no desktop: versions, the result window, cells.

#include "dialogs/ResultsListView.h"
#include "frame/MessageMap.h"
#include "shared/AutomationDate.h"
#include "updates/NewerVersion.h"
#include "updates/Reboot.h"
#include "updates/UpdateResultStore.h"
#include "updates/VersionInfo.h"

namespace {

using testing::ElementsAre;

FILETIME Time(std::uint64_t ticks) {
    return {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
}

constexpr std::uint64_t kNoon = 134'393'904'000'000'000;  // 2026-11-17 12:00:00 UTC

TEST(NewerVersion, ComparesFourNumbersWithTheProgramsOwn) {
    for (const char* newer : {"4.2.7-2", "4.2.7.2", "4.3.0-0", "5.0.0.0", "5.0.0-0-7", "..5..0.0-0",
                              "4.2.8.0", "70000.0.0.0", "4294967296.0.0.0", "-5-0-0-0"})
        EXPECT_TRUE(IsNewerVersion(newer)) << newer;
    for (const char* not_newer : {"4.2.7-1", "4.2.7.1", "4.2.6-99", "3.9.9.9", "4.1.99.99", "5",
                                  "5.0.0", "", ".-.-", "4.2.x.9", "next version"})
        EXPECT_FALSE(IsNewerVersion(not_newer)) << not_newer;
}

TEST(VersionInfo, ReadsTheProgramsOwnBlock) {
    CVersionInfo info;
    EXPECT_EQ(info.GetProductVersionMS(), 0u);
    EXPECT_EQ(info.GetProductName(), "");
    ASSERT_EQ(info.LoadModule(nullptr), 1);
    EXPECT_THAT((std::vector{info.GetProductVersionMS(), info.GetProductVersionLS(),
                             info.GetFileVersionMS(), info.GetFileVersionLS(), info.GetFileOS(),
                             info.GetFileType(), info.GetFileSubtype(), info.GetFileFlagsMask(),
                             info.GetFileFlags()}),
                ElementsAre(0x00040002u, 0x00070001u, 0x00040002u, 0x00070001u, 0x40004u, 1u, 0u,
                            0x3Fu, 0u));
    EXPECT_THAT(
        (std::vector{info.GetProductVersion(), info.GetFileVersion(), info.GetProductName(),
                     info.GetCompanyName(), info.GetFileDescription(), info.GetInternalName(),
                     info.GetOriginalFilename(), info.GetComments()}),
        ElementsAre("4.2.7-1", "4.2.7-1", "Tessara Link", "Corvane Systems",
                    "Tessara Link tray applet", "vh_tray", "vh_tray.exe", ""));
    EXPECT_EQ(info.GetLastErrorText(), nullptr);
    CVersionInfo other;
    ASSERT_EQ(other.LoadFile(SAMPLE_CPL), 1);
    EXPECT_EQ(other.GetFileVersionLS(), 0x00080007u);
    EXPECT_EQ(other.GetProductVersionLS(), 0x00080001u);
    EXPECT_EQ(other.GetFileVersion() + " " + other.GetProductVersion(), "4.2.8-7 4.2.8-1");
    SYSTEMTIME date;
    info.GetFileDateSystemTime(date);
    EXPECT_EQ(date.wYear, 1601);
    EXPECT_LT(info.GetFileDateVariant(), 0.0) << "1601 is before the first day of the dates";
    EXPECT_THAT(info.GetFileDateString(), testing::HasSubstr("1601"));
}

TEST(VersionInfo, AFileWithoutABlockLeavesItsError) {
    CVersionInfo info;
    EXPECT_EQ(info.LoadFile("no such file"), 0);
    EXPECT_NE(info.GetLastErrorText(), nullptr);
    EXPECT_EQ(info.GetFileDateVariant(), 0.0);
    EXPECT_EQ(info.GetProductVersion(), "");
}

TEST(ResultStore, TheWindowIsTenMinutesBothEndsIncluded) {
    EXPECT_TRUE(IsWithinResultWindow(Time(kNoon), Time(kNoon)));
    EXPECT_TRUE(IsWithinResultWindow(Time(kNoon), Time(kNoon - RESULT_WINDOW_TICKS)));
    EXPECT_FALSE(IsWithinResultWindow(Time(kNoon), Time(kNoon - RESULT_WINDOW_TICKS - 1)));
    EXPECT_FALSE(IsWithinResultWindow(Time(kNoon), Time(kNoon + 1)));
}

TEST(ResultText, TheReasonIsOneLine) {
    const std::string success = FormatResultReason({{}, 0});
    EXPECT_NE(success, "");
    EXPECT_EQ(success.find_first_of("\r\n"), std::string::npos);
    EXPECT_EQ(FormatResultReason({{}, 0xE1234567}), "Result code 0xE1234567");
}

TEST(ResultList, RecordsSortByTimeInWholeSecondsAndByUnsignedCode) {
    const UpdateResultRecord records[] = {{Time(kNoon), 3010},
                                          {Time(kNoon + 9'999'999), 3010},
                                          {Time(kNoon + 10'000'000), 0x80000000},
                                          {Time(~0ull), 0}};
    const auto entry = [&](int i) {
        return SortEntry{&records[i], ToAutomationDate(records[i].m_time), ""};
    };
    const SortEntry early = entry(0), sameSecond = entry(1), late = entry(2), none = entry(3);
    CInstallResultsListView installed;
    EXPECT_FALSE(installed.DoSortItems(0, false)) << "no such column";
    const CDownloadResultsListView failed;
    for (const auto& [list, time, code] :
         {std::tuple<const CSortListViewImpl&, int, int>{installed, 2, 3}, {failed, 1, 2}}) {
        EXPECT_EQ(list.FormatResultTime(records[3]), "");
        for (const int column : {time, code}) {
            EXPECT_EQ(list.CompareItemsCustom(early, late, column), -1);
            EXPECT_EQ(list.CompareItemsCustom(late, early, column), 1);
            EXPECT_EQ(list.CompareItemsCustom(early, sameSecond, column), 0);
            EXPECT_EQ(list.CompareItemsCustom(none, early, column), -1);
        }
        EXPECT_EQ(list.CompareItemsCustom(early, late, 0), 0);
    }
}

TEST(Reboot, IsNeededByThreeResults) {
    for (const DWORD result : {1641u, 3010u, 3011u}) EXPECT_TRUE(NeedsReboot(result)) << result;
    for (const DWORD result : {0u, 1603u, 1642u, 3009u, 3012u})
        EXPECT_FALSE(NeedsReboot(result)) << result;
}

// A message counts as handled as soon as its handler has begun, unless the handler says otherwise.
TEST(MessageMap, KeepsAMessageWhoseHandlerRunsOutOfMemoryFromTheDefaultProcedure) {
    struct : CMessageMap {
        BOOL ProcessWindowMessage(HWND window, UINT message, WPARAM, LPARAM,
                                  LRESULT& result) final {
            result = 1;
            if (message == WM_INITDIALOG) throw std::bad_alloc();
            if (message == WM_SETTINGCHANGE) Dispatch(window, WM_NULL, 0, 0, result);
            if (message == WM_COMMAND) m_bMsgHandled = FALSE;
            return message != WM_NULL;
        }
        using CMessageMap::Dispatch;
    } map;
    for (const auto& [message, handled, answer] : {std::tuple{WM_INITDIALOG, TRUE, 0},
                                                   {WM_SETTINGCHANGE, TRUE, 1},
                                                   {WM_COMMAND, FALSE, 1},
                                                   {WM_NULL, FALSE, 1}}) {
        LRESULT result = 0;
        EXPECT_EQ(map.Dispatch(nullptr, message, 0, 0, result), handled) << message;
        EXPECT_EQ(result, answer) << message;
    }
}

}  // namespace
