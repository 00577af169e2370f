// Tests of the common library that need the simulator: log lines with the manual clock, events of
// the system log, the second before a TCP connection closes, failing sockets and libraries,
// settings in a private registry, and guards that end the process.

#include <sys/stat.h>

#include <barrier>
#include <cstdarg>

#include "hlxInterface.h"
#include "hlxCommand.h"
#include "hlxParseConf.h"
#include "hlxSwCache.h"
#include "loopback.h"
#include "simulator/clock.h"
#include "simulator/faults.h"
#include "simulator/objects.h"
#include "simulator/threads.h"
#include "scoped_log.h"

using simulator::Clock;
using namespace std::chrono_literals;

namespace {
std::string g_events;  // of the system's log, whose functions are the two below
}

extern "C" void openlog(const char* name, int, int) { g_events += name; }
extern "C" void syslog(int priority, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    g_events += " " + std::to_string(priority) + " " + va_arg(arguments, const char*) + "\n";
    va_end(arguments);
}

namespace {

class Machine : public testing::Test {
protected:
    Machine() {
        setenv("WIN32_REGISTRY", m_registry.c_str(), 1);
        setenv("TZ", "UTC", 1);
        WSADATA data;
        WSAStartup(0x0202, &data);
        g_useTcp = -1;
        // 18 November 2026, 06:15:08
        Clock::SetManual(simulator::kUnixEpoch + 1'794'982'508 * simulator::kTicksPerSecond);
    }
    ~Machine() override {
        EXPECT_EQ(simulator::ClearFaults(), "") << "faults that nothing used";
        Clock::SetReal();
        WSACleanup();
        std::filesystem::remove_all(m_registry.c_str());
    }

    void SetUseTcp(DWORD value) { SetAgentValue("UseTCP", REG_DWORD, &value, sizeof value); }

    void SetAgentValue(const char* name, DWORD type, const void* data, DWORD size) {
        HKEY key = nullptr;
        RegCreateKeyExA(HKEY_LOCAL_MACHINE, HLX_AGENT_KEY, 0, nullptr, 0, KEY_WRITE, nullptr, &key,
                        nullptr);
        if (data) RegSetValueExA(key, name, 0, type, static_cast<const BYTE*>(data), size);
        RegCloseKey(key);
    }

private:
    const TempPath m_registry{"registry"};
};

TEST_F(Machine, WritesALineWithAllItsOptions) {
    const TempPath path("held");
    constexpr std::uint32_t kEveryField = 0x1F;
    ScopedLog log(&path, kEveryField, "vh_tray");
    log->pid = 4412;
    hlx_logSetLevel(log, 6);
    hlx_logSetMask(log, HLX_AREA_XML | HLX_AREA_XML_OTHER | HLX_AREA_INTEGRITY);
    hlx_log(log, 1, HLX_AREA_INTEGRITY, "message text");
    hlx_logSetDefault(log);
    const CHlxExpatWrapper scope;
    hlxParseConf tree;
    ASSERT_TRUE(tree.Create("UTF-8", nullptr));
    Clock::Advance(52s);
    EXPECT_TRUE(tree.Parse("<a b='1'> x<!--c--><?p i?></a>", -1, true));
    EXPECT_EQ(
        path.Text(),
        "vh_tray[4412]      0 2026-11-18 06:15:08 message text\n"
        "vh_tray[4412]      1 2026-11-18 06:16:00 hlxParseConf::OnStartElement depth: 1 tag:a\n"
        "vh_tray[4412]      2 2026-11-18 06:16:00 hlxParseConf::OnStartElement     attr b = 1\n"
        "vh_tray[4412]      3 2026-11-18 06:16:00 hlxParseConf::OnCharaccterData depth: 1 "
        "data: x\n"
        "vh_tray[4412]      4 2026-11-18 06:16:00 hlxParseConf::OnComment depth: 1: c\n"
        "vh_tray[4412]      5 2026-11-18 06:16:00 hlxParseConf::OnDefault: depth:1 <?p i?>\n");
}

TEST_F(Machine, SendsByTcpAndWaitsASecondBeforeTheEnd) {
    SetUseTcp(1);
    const Loopback listener(SOCK_STREAM, HLX_TCP_PORT);
    ASSERT_EQ(listen(listener, 1), 0);
    const struct {
        const char* failing;
        int code;
        std::string frame, before;
    } cases[] = {
        {"", 0, "00 00 00 0A 00 00 00 03 68 69 00", "nothing"},
        {"send", WSAECONNRESET, "end", "end"},
        {"shutdown", WSAENOTCONN, "00 00 00 0A 00 00 00 03 68 69 00", "nothing"},
    };
    for (const auto& each : cases) {
        if (*each.failing) simulator::FailNext(each.failing, 1, each.code);
        std::int32_t error = 77;
        simulator::ThreadRegistration registration;
        std::thread sender([&] {
            registration.Enter();
            EXPECT_EQ(hlx_sendCommand(HLX_UDP_PORT, HLX_COMMAND_TEXT, B("hi"), 3, &error),
                      each.code ? HLX_SOCKET_FAILED : HLX_DONE);
            registration.Leave();
        });
        const SOCKET connection = accept(listener, nullptr, nullptr);
        EXPECT_EQ(ReceivedHex(connection), each.frame);
        simulator::WaitUntilIdle();
        Clock::Advance(999ms);
        EXPECT_EQ(ReceivedHex(connection, MSG_DONTWAIT), each.before);
        Clock::Advance(1ms);
        EXPECT_EQ(ReceivedHex(connection), "end");
        sender.join();
        EXPECT_EQ(error, each.code);
        closesocket(connection);
        EXPECT_EQ(simulator::LiveObjects()["socket"], 1u) << "that of the listener";
    }
}

TEST_F(Machine, TakesTheTransportFromTheKeyOnceItOpens) {
    EXPECT_EQ(hlx_useTcp(), -1);
    EXPECT_EQ(g_useTcp, -1);
    SetAgentValue(nullptr, REG_SZ, nullptr, 0);
    EXPECT_EQ(hlx_useTcp(), 0) << "the key has no such value";
    SetUseTcp(2);
    EXPECT_EQ(hlx_useTcp(), 0) << "it is not read again";
    g_useTcp = -1;
    EXPECT_EQ(hlx_useTcp(), 2);
    EXPECT_EQ(hlx_requestDownload(), 0) << "by UDP, which needs no listener";
}

TEST_F(Machine, RepeatsADatagramThatWouldBlockALimitedNumberOfTimes) {
    g_useTcp = 0;
    const struct {
        const char* failing;
        int times, code;
        HlxResult result;
        decltype(&hlx_sendCommand) send = hlx_sendCommand;
    } cases[] = {
        {"sendto", 2, WSAEWOULDBLOCK, HLX_DONE},
        {"sendto", simulator::kEveryCall, WSAEWOULDBLOCK, HLX_SOCKET_FAILED},
        {"sendto", 1, WSAEINTR, HLX_DONE},
        {"socket", 1, WSAEMFILE, HLX_SOCKET_FAILED},
        {"socket", 1, WSAEMFILE, HLX_SOCKET_FAILED, hlx_sendCommandTcp},
        {"connect", 1, WSAETIMEDOUT, HLX_SOCKET_FAILED, hlx_sendCommandTcp},
    };
    for (const auto& each : cases) {
        std::int32_t error = 77;
        simulator::FailNext(each.failing, each.times, each.code);
        EXPECT_EQ(each.send(HLX_UDP_PORT, 1, B("x"), 1, &error), each.result);
        EXPECT_EQ(error, each.code);
        EXPECT_EQ(simulator::ClearFaults(), "");
        EXPECT_EQ(simulator::LiveObjects().count("socket"), 0u);
    }
}

TEST_F(Machine, WritesEventsOfEachLevelUnderTheProgramsName) {
    simulator::FailNext("RegisterEventSourceA", 1, ERROR_ACCESS_DENIED);
    ScopedLog log(nullptr, 0, "p");
    EXPECT_EQ(hlx_logAddSink(log, HLX_SINK_EVENT_LOG, nullptr), HLX_NOT_OPENED);
    EXPECT_EQ(hlx_logAddSink(log, HLX_SINK_EVENT_LOG, nullptr), HLX_DONE);
    hlx_logSetLevel(log, 3);
    for (const int level : {0, 1, 2, 3}) hlx_log(log, level, HLX_AREA_INTEGRITY, "%d", level);
    EXPECT_EQ(g_events, "p 6 0\np 3 1\np 4 2\np 6 3\n");
}

TEST_F(Machine, WritesTheCacheFileForAllToReadAndKeepsItsMask) {
    const TempPath path("mask");
    const mode_t before = umask(0);
    EXPECT_EQ(hlx_setSwCache(path.c_str(), "", "", "", ""), 0u);
    EXPECT_EQ(hlx_setSwCache("no/file", "", "", "", ""), 10u);
    EXPECT_EQ(umask(before), 0u);
    EXPECT_EQ(std::filesystem::status(path.c_str()).permissions(), std::filesystem::perms{0644});
}

TEST_F(Machine, LoadsTheParserFromTheAgentsDirectoryIfItIsThere) {
    char program[MAX_PATH];
    GetModuleFileNameA(nullptr, program, sizeof program);
    const std::string folder = std::filesystem::path(program).parent_path().string();
    const struct {
        const char* failing;
        int times;
        std::string directory;
        bool isFound;
    } cases[] = {
        {"LoadLibraryA", 2, "", false},
        {"LoadLibraryA", 1, "", true},  // by the bare name again, as there is no key
        {"LoadLibraryA", 1, folder, true},
        {"LoadLibraryA", 1, folder + "\\", true},
        {"LoadLibraryA", 1, "/no/such/folder", false},
        {"GetProcAddress", 1, "", false},
    };
    const auto canParse = [] {
        const CHlxExpatWrapper scope;
        hlxParseConf tree;
        return tree.Create("UTF-8", nullptr) && tree.Parse("<a/>", -1, true);
    };
    for (const auto& each : cases) {
        if (!each.directory.empty())
            SetAgentValue(nullptr, REG_EXPAND_SZ, each.directory.c_str(),
                          static_cast<DWORD>(each.directory.size() + 1));
        simulator::FailNext(each.failing, each.times, ERROR_MOD_NOT_FOUND);
        EXPECT_EQ(canParse(), each.isFound) << each.directory;
        EXPECT_TRUE(canParse());
        EXPECT_EQ(simulator::LiveObjects().count("library"), 0u) << "unloaded";
    }
}

TEST_F(Machine, LoadsTheParserOnceForTwoThreads) {
    for (int round = 0; round < 50; ++round) {
        std::barrier bothReady(2);
        const auto use = [&] {
            bothReady.arrive_and_wait();
            EXPECT_NE(hlx_expatFunctions(), nullptr);
        };
        std::thread other(use);
        use();
        other.join();
        hlx_unloadExpat();
        EXPECT_EQ(simulator::LiveObjects().count("library"), 0u);
    }
}

TEST(GlueDeathTest, EndsTheProcessBeforeANullParserIsUsed) {
    hlxParseConf tree;
    const std::string guard = "m_p != NULL.*ExpatImpl.*line ";
    EXPECT_DEATH(tree.Parse("<a/>", -1, true), guard + "156");
    EXPECT_DEATH(tree.EnableStartElementHandler(true), guard + "222");
    EXPECT_DEATH(tree.EnableEndElementHandler(true), guard + "230");
    EXPECT_DEATH(tree.EnableCharacterDataHandler(true), guard + "247");
    EXPECT_DEATH(tree.EnableCommentHandler(true), guard + "265");
    EXPECT_DEATH(tree.EnableDefaultHandler(true, true), guard + "300");
}

}  // namespace
