// What only the simulated machine can show of the common library: lines with the clock held, the
// second that a TCP frame waits, sockets and libraries that fail on order, the settings in a
// registry of the test's own, and guards that end the process.

#include <winsock2.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <cstdlib>
#include <filesystem>
#include <thread>

#include "hlxAgentKey.h"
#include "hlxCommand.h"
#include "hlxParseConf.h"
#include "loopback.h"
#include "machine/clock.h"
#include "machine/faults.h"
#include "machine/waits.h"
#include "scoped_log.h"

using machine::Clock;
using namespace std::chrono_literals;

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
        Clock::Hold(machine::kUnixEpoch + 1'794'982'508 * machine::kTicksPerSecond);
    }
    ~Machine() override {
        machine::ClearFaults();
        Clock::Release();
        WSACleanup();
        std::filesystem::remove_all(m_registry.c_str());
    }

    void SetAgentValue(const char* name, DWORD type, const void* data, DWORD size) {
        HKEY key = nullptr;
        ASSERT_EQ(RegCreateKeyExA(HKEY_LOCAL_MACHINE, kHlxAgentKey, 0, nullptr, 0, KEY_WRITE,
                                  nullptr, &key, nullptr),
                  ERROR_SUCCESS);
        if (data) RegSetValueExA(key, name, 0, type, static_cast<const BYTE*>(data), size);
        RegCloseKey(key);
    }

private:
    const TempPath m_registry{"registry"};
};

TEST_F(Machine, WritesALineWithAllItsOptions) {
    const TempPath path("held");
    ScopedLog log(
        &path, HLX_LOG_DATE | HLX_LOG_TIME | HLX_LOG_LINE_NUMBER | HLX_LOG_PROGNAME | HLX_LOG_PID,
        "vh_tray");
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
    const DWORD yes = 1;
    SetAgentValue("UseTCP", REG_DWORD, &yes, sizeof yes);
    const Loopback listener(SOCK_STREAM, kHlxTcpPort);
    ASSERT_EQ(listen(listener, 1), 0);
    std::int32_t error = 77;
    HlxResult result = HLX_EXCEPTION;
    machine::ThreadMark mark;
    std::thread sender([&] {
        mark.Enter();
        result = hlx_sendCommand(1, HLX_COMMAND_TEXT, reinterpret_cast<const std::uint8_t*>("hi"),
                                 3, &error);
        mark.Leave();
    });
    const SOCKET connection = accept(listener, nullptr, nullptr);
    EXPECT_EQ(ReceivedHex(connection), "00 00 00 0A 00 00 00 03 68 69 00");
    {
        machine::WorldLock lock = machine::LockWorld();
        machine::Settle(lock);
    }
    Clock::Advance(999ms);
    EXPECT_EQ(ReceivedHex(connection, MSG_DONTWAIT), "nothing");
    Clock::Advance(1ms);
    EXPECT_EQ(ReceivedHex(connection), "end");
    sender.join();
    EXPECT_EQ(result, HLX_DONE);
    EXPECT_EQ(error, 0);
    closesocket(connection);
}

TEST_F(Machine, TakesTheTransportFromTheKeyOnceItOpens) {
    EXPECT_EQ(hlx_useTcp(), -1);
    EXPECT_EQ(g_useTcp, -1);
    SetAgentValue(nullptr, REG_SZ, nullptr, 0);
    EXPECT_EQ(hlx_useTcp(), 0) << "the key has no such value";
    const DWORD two = 2;
    SetAgentValue("UseTCP", REG_DWORD, &two, sizeof two);
    EXPECT_EQ(hlx_useTcp(), 0) << "it is not read again";
    g_useTcp = -1;
    EXPECT_EQ(hlx_useTcp(), 2);
    EXPECT_EQ(hlx_requestDownload(), 0) << "by UDP, where nobody has to listen";
}

TEST_F(Machine, RepeatsADatagramThatWouldBlockButNotForEver) {
    g_useTcp = 0;
    const auto send = [](std::int32_t& error) {
        return hlx_sendCommand(kHlxUdpPort, 1, reinterpret_cast<const std::uint8_t*>("x"), 1,
                               &error);
    };
    std::int32_t error = 77;
    machine::FailNext("sendto", 2, WSAEWOULDBLOCK);
    EXPECT_EQ(send(error), HLX_DONE);
    EXPECT_EQ(error, WSAEWOULDBLOCK) << "of the attempt that was repeated";
    machine::FailNext("sendto", 1, WSAEINTR);
    EXPECT_EQ(hlx_requestReassess(), WSAEINTR);
    machine::FailNext("sendto", machine::kEveryCall, WSAEWOULDBLOCK);
    EXPECT_EQ(send(error), HLX_SOCKET_FAILED);
    machine::ClearFaults();
    machine::FailNext("socket", 1, WSAEMFILE);
    EXPECT_EQ(send(error), HLX_SOCKET_FAILED);
    EXPECT_EQ(error, WSAEMFILE);
    machine::FailNext("RegisterEventSourceA", 1, 5);
    ScopedLog log(nullptr, 0, "p");
    EXPECT_EQ(hlx_logAddSink(log, HLX_SINK_EVENT_LOG, nullptr), HLX_NOT_OPENED);
}

TEST_F(Machine, FindsTheParserInTheAgentsDirectoryOrDoesWithout) {
    char program[MAX_PATH];
    GetModuleFileNameA(nullptr, program, sizeof program);
    const std::string folder = std::filesystem::path(program).parent_path().string();
    const auto canParse = [] {
        const CHlxExpatWrapper scope;
        hlxParseConf tree;
        return tree.Create("UTF-8", nullptr) && tree.Parse("<a/>", -1, true);
    };
    machine::FailNext("LoadLibraryA", 2, ERROR_MOD_NOT_FOUND);
    EXPECT_FALSE(canParse());
    machine::FailNext("LoadLibraryA", 1, ERROR_MOD_NOT_FOUND);
    EXPECT_TRUE(canParse()) << "the bare name again, as there is no key";
    for (const std::string& directory : {folder, folder + "\\"}) {
        SetAgentValue(nullptr, REG_EXPAND_SZ, directory.c_str(),
                      static_cast<DWORD>(directory.size() + 1));
        machine::FailNext("LoadLibraryA", 1, ERROR_MOD_NOT_FOUND);
        EXPECT_TRUE(canParse());
    }
    SetAgentValue(nullptr, REG_SZ, "/no/such/folder", 16);
    machine::FailNext("LoadLibraryA", 1, ERROR_MOD_NOT_FOUND);
    EXPECT_FALSE(canParse());
    EXPECT_TRUE(canParse());
    machine::FailNext("GetProcAddress", 1, ERROR_PROC_NOT_FOUND);
    EXPECT_FALSE(canParse()) << "a library without one of the functions";
    EXPECT_TRUE(canParse());
}

TEST(GlueDeathTest, EndsTheProcessBeforeANullParserIsUsed) {
    const struct {
        void (*use)(hlxParseConf&);
        const char* line;
    } cases[] = {
        {[](hlxParseConf& tree) { tree.Parse("<a/>", -1, true); }, "line 156"},
        {[](hlxParseConf& tree) { tree.EnableStartElementHandler(true); }, "line 222"},
        {[](hlxParseConf& tree) { tree.EnableEndElementHandler(true); }, "line 230"},
        {[](hlxParseConf& tree) { tree.EnableCharacterDataHandler(true); }, "line 247"},
        {[](hlxParseConf& tree) { tree.EnableCommentHandler(true); }, "line 265"},
        {[](hlxParseConf& tree) { tree.EnableDefaultHandler(true, true); }, "line 300"},
    };
    hlxParseConf tree;
    for (const auto& each : cases)
        EXPECT_DEATH(each.use(tree), std::string("m_p != NULL.*ExpatImpl.*") + each.line);
}

}  // namespace
