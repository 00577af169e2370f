// The applet's start and end: one instance, the start window, the exit codes, an empty
// tray.
#include <malloc.h>

#include "simulator/objects.h"
#include "simulator/windows_version.h"
#include "story.h"

namespace {

class Lifetime : public Story {};

TEST_F(Lifetime, ASecondInstanceEndsAtOnceWithoutEffect) {
    StartWith({});
    EXPECT_EQ(std::system(VH_TRAY " < /dev/null > /dev/null"), 0) << "another process";
    EXPECT_EQ(ExitCode(), std::nullopt);
    EXPECT_THAT(Tray(), ElementsAre(TRAY_ID_HEALTH));
}

TEST_F(Lifetime, AStartThatCannotBeCompletedEndsWithZeroAndLeavesNothing) {
    Deliver({});
    const auto expectNoStart = [&](const char* call) {
        Start();
        EXPECT_EQ(ExitCode(), 0) << call;
    };
    for (const char* call : {"CreateMutexA", "CreateDialogParamA"}) {
        simulator::FailNext(call, 1, ERROR_ACCESS_DENIED);
        expectNoStart(call);
    }
    // Memory runs out before there is a dialog, at the first path and at the second one.
    for (const auto& [call, skip] :
         {std::pair{"CreateDialogParamA", 0}, {"RegOpenKeyExA", 0}, {"RegOpenKeyExA", 1}}) {
        simulator::BeforeNext(
            call, [] { throw std::bad_alloc(); }, simulator::kAnyDetail, skip);
        expectNoStart(call);
    }
    Start();
    EXPECT_EQ(ExitCode(), std::nullopt) << "the mutex is free";
}

TEST_F(Lifetime, ClicksAndCommandsThatAreSentDuringTheEndOpenNothing) {
    for (const auto& [message, wParam] :
         {std::pair{WM_TRAYNOTIFY, TRAY_ID_INSTALLED}, {UINT{WM_COMMAND}, ID_EXIT}}) {
        StartWith({});
        Report(HLX_INSTALL_RESULTS_KEY, "x", 0);
        const HWND window = FindWindowA(nullptr, "hlx_vh_tray");
        simulator::BeforeNext(
            "Shell_NotifyIconA", [=] { SendMessageA(window, message, wParam, WM_LBUTTONDBLCLK); },
            NIM_DELETE);
        desktop::PostCommand(IDOK);
        EXPECT_EQ(ExitCode(), IDOK);
    }
}

TEST_F(Lifetime, BuffersThatAreNotReceivedAreDeleted) {
    const std::string large(20'000'000, 'x');
    const HWND window = (StartWith({}), FindWindowA(nullptr, "hlx_vh_tray"));
    const auto inUse = [] { return mallinfo2().uordblks + mallinfo2().hblkhd; };
    const auto before = inUse();
    WriteFile(HLX_HEALTH_FILE, large);
    WriteFile(HLX_SWCACHE_FILE, large);
    simulator::BeforeNext("sendto", [=] {
        PostMessageA(window, WM_COMMAND, ID_EXIT, 0);
        Pass();
    });
    desktop::PostCommand(ID_REASSESS);
    EXPECT_EQ(ExitCode(), 32780);
    EXPECT_LT(inUse(), before + large.size() / 2);
}

TEST_F(Lifetime, AWatcherWhoseThreadDoesNotEndInTimeIsNotDeleted) {
    StartWith({});
    const HANDLE never = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    simulator::BeforeNext("CreateFileA", [=] { WaitForSingleObject(never, INFINITE); });
    Pass();
    EXPECT_EQ(End(), IDCANCEL);
    m_objectsBefore = simulator::LiveObjects();
    EXPECT_EQ(m_objectsBefore["thread"], 1u) << "with all that the thread uses";
}

TEST_F(Lifetime, TheMutexIsGlobalOnSystemsWithSessions) {
    const std::string name = "HLXVHTRAY_{5D1C7E20-9B44-4a36-A1F7-3C6E08D2B7F9}";
    for (const auto& [major, other] : {std::pair{5u, "Global\\" + name}, {4u, name}}) {
        simulator::SetWindowsVersion({major, 0});
        const HANDLE mutex = CreateMutexA(nullptr, FALSE, other.c_str());
        Start();
        EXPECT_EQ(ExitCode(), 0) << other;
        CloseHandle(mutex);
        ++m_objectsBefore["mutex"];  // the system closes the applet's handle with the process
    }
}

TEST_F(Lifetime, DropsResultsDuringTheStartAndReadsAgainAfterIt) {
    Deliver({});
    std::filesystem::last_write_time(m_agentDirectory / HLX_HEALTH_FILE, {});
    Start();
    EXPECT_THAT(Tray(), IsEmpty()) << "the first reading came before the start timer";
    desktop::Advance(4900ms);
    EXPECT_THAT(Tray(), IsEmpty());
    desktop::Advance(200ms);
    EXPECT_THAT(Tray(), ElementsAre(TRAY_ID_HEALTH)) << "the forced reading, file unchanged";
}

TEST_F(Lifetime, OtherTimersDoNotEndTheStart) {
    Deliver({});
    simulator::FailNext("SetTimer", 1, ERROR_NOT_ENOUGH_MEMORY);
    Start();
    desktop::Post(WM_TIMER, 1, 0);
    desktop::PostCommand(ID_REASSESS);
    Show({});
    EXPECT_THAT(Tray(), IsEmpty());
    desktop::PostCommand(ID_REASSESS);
    EXPECT_EQ(Frames().size(), 2u) << "a result that is dropped answers the request too";
    desktop::Post(WM_TIMER, IDT_START, 0);
    Pass();
    EXPECT_THAT(Tray(), ElementsAre(TRAY_ID_HEALTH));
}

TEST_F(Lifetime, WithoutAnAgentItReadsTheCurrentDirectory) {
    ASSERT_EQ(RegDeleteTreeA(HKEY_LOCAL_MACHINE, HLX_AGENT_KEY), ERROR_SUCCESS);
    std::filesystem::current_path(m_agentDirectory);
    StartWith({});
    EXPECT_STREQ(GetHealthNotifPath(), "healthnotif.txt");
    EXPECT_STREQ(GetSwCachePath(), "swcache");
    EXPECT_THAT(Tray(), ElementsAre(TRAY_ID_HEALTH));
}

TEST_F(Lifetime, AnAgentsDirectoryMayEndWithABackslashOrBeEmpty) {
    WriteText(HLX_AGENT_KEY, nullptr, R"(C:\Agent\)");
    EXPECT_STREQ(GetHealthNotifPath(), R"(C:\Agent\healthnotif.txt)");
    WriteText(HLX_AGENT_KEY, nullptr, "");
    EXPECT_STREQ(GetSwCachePath(), "swcache");
}

}  // namespace
