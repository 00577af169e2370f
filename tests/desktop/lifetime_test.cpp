// The applet's start and end: one instance, the start window, the exit codes, an empty tray; scripts.
#include <cstdlib>

#include "machine/windows_version.h"
#include "story.h"

namespace {

class Lifetime : public Story {};

TEST_F(Lifetime, EachWayToCloseGivesItsExitCodeAndLeavesTheTrayEmpty) {
    const struct {
        UINT message;
        WPARAM wParam;
        int exitCode;
    } ways[] = {{WM_COMMAND, IDOK, 1},
                {WM_COMMAND, IDCANCEL, 2},
                {WM_CLOSE, 0, 2},
                {WM_COMMAND, ID_EXIT, 32780}};
    for (const auto& way : ways) {
        StartWith({});
        Report(kInstallResultsKey, "x", 0);
        ASSERT_EQ(Tray().size(), 2u);
        ASSERT_TRUE(desktop::Post(way.message, way.wParam, 0));
        EXPECT_EQ(ExitCode(), way.exitCode);
        EXPECT_THAT(Tray(), IsEmpty());
    }
}

TEST_F(Lifetime, TheUserLogsOffWhileEverythingIsOpen) {
    StartWith({});
    Report(kInstallResultsKey, "x", 0);
    ASSERT_TRUE(desktop::DoubleClick(TRAY_ID_INSTALLED));
    Show({.state = "low", .message = "Please call.", .url = "http://help"});
    ASSERT_TRUE(desktop::DoubleClick(TRAY_ID_INSTALLED));
    EXPECT_EQ(desktop::Dialogs().size(), 2u);
    EXPECT_EQ(desktop::Boxes().size(), 1u);
    ASSERT_TRUE(desktop::RightClick(TRAY_ID_HEALTH));
    ASSERT_TRUE(desktop::LogOff());
    EXPECT_EQ(ExitCode(), 2);
    EXPECT_THAT(desktop::Dialogs(), IsEmpty());
    EXPECT_THAT(desktop::Boxes(), IsEmpty());
    EXPECT_THAT(desktop::Pages(), IsEmpty()) << "the page behind the box is left out";
    EXPECT_FALSE(desktop::OpenMenu());
    EXPECT_EQ(desktop::Journal().back().kind, desktop::EventKind::kEnded);
}

TEST_F(Lifetime, ASecondInstanceEndsAtOnceAndLeavesTheFirstAlone) {
    StartWith({});
    EXPECT_EQ(std::system(VH_TRAY " < /dev/null > /dev/null"), 0) << "another process";
    EXPECT_EQ(ExitCode(), std::nullopt);
    EXPECT_THAT(Tray(), ElementsAre(TRAY_ID_HEALTH));
}

TEST_F(Lifetime, TheTerminalSaysWhyAHandFailsAndKeepsControlBytesOut) {
    const struct {
        std::string script, printed;
    } scripts[] = {{"press OK", "? no window takes input"},
                   {"wait", "? wait needs a text"},
                   {"wait \"abc\" xyz", "? behind the quoted text stands a number of seconds"},
                   {"# \033[31m", "# ?[31m"}};
    for (const auto& [script, printed] : scripts) {
        const auto run = "printf '" + script + "' | " VH_TRAY " | grep -xF '" + printed + "'";
        EXPECT_EQ(std::system((run + " > /dev/null").c_str()), 0) << script;
    }
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
        machine::SetWindowsVersion({major, 0});
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
    Show({});
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

TEST_F(Lifetime, AnAgentsDirectoryMayEndWithABackslashOrBeEmpty) {
    WriteText(kHlxAgentKey, nullptr, R"(C:\Agent\)");
    EXPECT_STREQ(GetHealthNotifPath(), R"(C:\Agent\healthnotif.txt)");
    WriteText(kHlxAgentKey, nullptr, "");
    EXPECT_STREQ(GetSwCachePath(), "swcache");
}

}  // namespace
