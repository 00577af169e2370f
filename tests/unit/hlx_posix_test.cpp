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

    void SetUseTcp(DWORD value) { SetAgentValue("UseTCP", REG_DWORD, &value, sizeof value); }

    void SetAgentValue(const char* name, DWORD type, const void* data, DWORD size) {
        HKEY key = nullptr;
        RegCreateKeyExA(HKEY_LOCAL_MACHINE, kHlxAgentKey, 0, nullptr, 0, KEY_WRITE, nullptr, &key,
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
    const Loopback listener(SOCK_STREAM, kHlxTcpPort);
    ASSERT_EQ(listen(listener, 1), 0);
    std::int32_t error = 77;
    machine::ThreadMark mark;
    std::thread sender([&] {
        mark.Enter();
        error = hlx_sendText("hi");
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
    EXPECT_EQ(error, 0);
    closesocket(connection);
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
    EXPECT_EQ(hlx_requestDownload(), 0) << "by UDP, where nobody has to listen";
}

TEST_F(Machine, RepeatsADatagramThatWouldBlockButNotForEver) {
    g_useTcp = 0;
    const struct {
        const char* failing;
        int times, code;
        HlxResult result;
    } cases[] = {
        {"sendto", 2, WSAEWOULDBLOCK, HLX_DONE},
        {"sendto", machine::kEveryCall, WSAEWOULDBLOCK, HLX_SOCKET_FAILED},
        {"sendto", 1, WSAEINTR, HLX_DONE},
        {"socket", 1, WSAEMFILE, HLX_SOCKET_FAILED},
    };
    for (const auto& each : cases) {
        std::int32_t error = 77;
        machine::FailNext(each.failing, each.times, each.code);
        EXPECT_EQ(hlx_sendCommand(kHlxUdpPort, 1, B("x"), 1, &error), each.result);
        EXPECT_EQ(error, each.code);
        machine::ClearFaults();
    }
    machine::FailNext("RegisterEventSourceA", 1, 5);
    ScopedLog log(nullptr, 0, "p");
    EXPECT_EQ(hlx_logAddSink(log, HLX_SINK_EVENT_LOG, nullptr), HLX_NOT_OPENED);
}

TEST_F(Machine, FindsTheParserInTheAgentsDirectoryOrDoesWithout) {
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
        machine::FailNext(each.failing, each.times, ERROR_MOD_NOT_FOUND);
        EXPECT_EQ(canParse(), each.isFound) << each.directory;
        EXPECT_TRUE(canParse());
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
