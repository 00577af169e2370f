// The applet's start and end: one instance, the start window, the exit codes, an empty tray.
#include <cstdlib>

#include "src/system.h"
#include "story.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class Lifetime : public Story {};

struct Closing {
    UINT message;
    WPARAM wParam;
    int exitCode;
};

class ClosedBy : public Story, public testing::WithParamInterface<Closing> {};

TEST_P(ClosedBy, GivesItsExitCodeAndLeavesTheTrayEmpty) {
    StartWith({});
    Report(kInstallResultsKey, "x", 0);
    ASSERT_THAT(Tray(), ElementsAre(TRAY_ID_HEALTH, TRAY_ID_INSTALLED));
    ASSERT_TRUE(desktop::Post(GetParam().message, GetParam().wParam, 0));
    EXPECT_EQ(ExitCode(), GetParam().exitCode);
    EXPECT_THAT(Tray(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(EachWay, ClosedBy,
                         testing::Values(Closing{WM_COMMAND, IDOK, 1},
                                         Closing{WM_COMMAND, IDCANCEL, 2}, Closing{WM_CLOSE, 0, 2},
                                         Closing{WM_COMMAND, ID_EXIT, 32780}));

TEST_F(Lifetime, ASecondInstanceEndsAtOnceAndLeavesTheFirstAlone) {
    StartWith({});
    EXPECT_EQ(std::system(VH_TRAY " < /dev/null > /dev/null"), 0) << "another process";
    EXPECT_EQ(ExitCode(), std::nullopt);
    EXPECT_THAT(Tray(), ElementsAre(TRAY_ID_HEALTH));
}

TEST_F(Lifetime, DoesNotStartWhenTheMutexOrTheDialogCannotBeMade) {
    for (const char* operation : {"CreateMutexA", "CreateDialogParamA"}) {
        machine::FailNext(operation, 1, ERROR_ACCESS_DENIED);
        desktop::Session session([] { return WinMain(nullptr, nullptr, nullptr, 0); });
        desktop::Advance(0ms);
        EXPECT_EQ(session.ExitCode(), 0) << operation;
    }
}

TEST_F(Lifetime, TheMutexSpansSessionsWhereThereAreSome) {
    for (const auto& [major, prefix] : {std::pair{5u, "Global\\"}, {4u, ""}}) {
        win32::SetWindowsVersion(major, 0);
        Start();
        const std::string name =
            std::string(prefix) + "HLXVHTRAY_{5D1C7E20-9B44-4a36-A1F7-3C6E08D2B7F9}";
        const HANDLE mutex = CreateMutexA(nullptr, FALSE, name.c_str());
        EXPECT_EQ(GetLastError(), DWORD{ERROR_ALREADY_EXISTS}) << name;
        CloseHandle(mutex);
        End();
    }
}

TEST_F(Lifetime, DropsWhatComesInTheStartWindowAndReadsAgainAfterIt) {
    Deliver({});
    Start();
    EXPECT_THAT(Tray(), IsEmpty()) << "the first reading came before the start timer";
    desktop::Advance(4900ms);
    EXPECT_THAT(Tray(), IsEmpty());
    desktop::Advance(200ms);
    EXPECT_THAT(Tray(), ElementsAre(TRAY_ID_HEALTH)) << "the forced reading, file unchanged";
}

TEST_F(Lifetime, OtherTimersDoNotEndTheStartWindow) {
    Deliver({});
    machine::FailNext("SetTimer", 1, ERROR_NOT_ENOUGH_MEMORY);
    Start();
    desktop::Post(WM_TIMER, 1, 0);
    Deliver({});
    Pass();
    EXPECT_THAT(Tray(), IsEmpty());
    desktop::Post(WM_TIMER, IDT_START, 0);
    Pass();
    EXPECT_THAT(Tray(), ElementsAre(TRAY_ID_HEALTH));
}

TEST_F(Lifetime, WithoutAnAgentItLooksInTheCurrentFolder) {
    ASSERT_EQ(RegDeleteTreeA(HKEY_LOCAL_MACHINE, kHlxAgentKey), ERROR_SUCCESS);
    std::filesystem::current_path(m_agentDirectory);
    StartWith({});
    EXPECT_STREQ(GetHealthNotifPath(), "healthnotif.txt");
    EXPECT_STREQ(GetSwCachePath(), "swcache");
    EXPECT_THAT(Tray(), ElementsAre(TRAY_ID_HEALTH));
}

TEST_F(Lifetime, AddsNoSecondBackslashToTheAgentsDirectory) {
    WriteText(kHlxAgentKey, nullptr, R"(C:\Agent\)");
    EXPECT_STREQ(GetHealthNotifPath(), R"(C:\Agent\healthnotif.txt)");
}

TEST_F(Lifetime, ADirectoryThatIsEmptyLeavesTheBareName) {
    WriteText(kHlxAgentKey, nullptr, "");
    EXPECT_STREQ(GetSwCachePath(), "swcache");
}

}  // namespace
