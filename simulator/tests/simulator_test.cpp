// What the simulator has beyond Windows: fault injection, the manual clock, and an end with a
// message for what it does not implement.
#include <commctrl.h>
#include <process.h>

#include <regex>

#include "core/waiting.h"
#include "simulator/clock.h"
#include "simulator/faults.h"
#include "simulator/threads.h"

using namespace std::chrono_literals;

namespace {

using simulator::ClearFaults, simulator::FailNext;

TEST(Faults, AffectTheCallsThatTheyAreInjectedInto) {
    EXPECT_THROW(FailNext("RegOpenKeyEx", 1, 5), std::invalid_argument) << "no call of that name";
    EXPECT_THROW(FailNext("SetEvent", 1, 5, 3), std::invalid_argument) << "it has no detail";
    const HANDLE event = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    FailNext("SetEvent", 1, ERROR_ACCESS_DENIED, simulator::kAnyDetail, 1);
    EXPECT_TRUE(SetEvent(event));
    EXPECT_FALSE(SetEvent(event));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_ACCESS_DENIED});
    EXPECT_TRUE(SetEvent(event));
    EXPECT_EQ(ClearFaults(), "");
    FailNext("LoadStringA", 1, 5, 7);
    FailNext("ResetEvent", simulator::kEveryCall, 5);
    EXPECT_FALSE(ResetEvent(event));
    EXPECT_EQ(LoadStringA(nullptr, 8, nullptr, 0), 0);
    EXPECT_EQ(ClearFaults(), "LoadStringA") << "for another string, so nothing used it";
    CloseHandle(event);
}

// The functions that the headers declare.
std::set<std::string> DeclaredFunctions() {
    const std::regex declaration(R"(^(?!typedef)\w[\w:* ]*?\b(\w+)\((?!CALLBACK))");
    std::set<std::string> functions;
    for (const auto& header : std::filesystem::directory_iterator(INCLUDE)) {
        std::ifstream file(header.path());
        std::smatch match;
        for (std::string line; std::getline(file, line);)
            if (std::regex_search(line, match, declaration)) functions.insert(match[1]);
    }
    return functions;
}

TEST(Faults, ReachEveryCallThatCanFail) {
    const std::set<std::string> cannotFail{
        // Its result is no failure, or it has none.
        "CallWindowProcA", "CoUninitialize", "DefDlgProcA", "DefWindowProcA",
        "DeleteCriticalSection", "DispatchMessageA", "EnableWindow", "EnterCriticalSection",
        "GetCurrentProcess", "GetCurrentProcessId", "GetCurrentThreadId", "GetFocus",
        "GetLastError", "GetLocalTime", "GetSystemTime", "GetSystemTimeAsFileTime",
        "InitializeCriticalSection", "IsChild", "IsDialogMessageA", "IsWindow", "IsWindowEnabled",
        "LeaveCriticalSection", "MonitorFromPoint", "PeekMessageA", "PostQuitMessage",
        "SendMessageA", "SetCursor", "SetLastError", "ShowWindow", "Sleep", "TranslateMessage",
        "WSAGetLastError", "_mbstok", "_umask", "lstrcmpA", "lstrcmpiA",
        // It fails for a handle or an index that is not valid, and for nothing else.
        "DeleteDC", "DeleteObject", "DestroyIcon", "DestroyMenu", "DestroyWindow", "EndDialog",
        "FreeLibrary", "GetSysColor", "GetSysColorBrush", "GetSystemMetrics", "GetWindowLongPtrA",
        "KillTimer", "LocalFree", "ReleaseDC", "SetWindowLongPtrA", "WSACleanup"};
    std::set<std::string> expected, reached;
    for (const std::string& function : DeclaredFunctions())
        if (!cannotFail.contains(function)) expected.insert(function);
    // What is called by another way than its declaration.
    expected.insert(
        {"DllGetVersion", "LVM_INSERTCOLUMNA", "LVM_INSERTITEMA", "LVM_SETITEMA", "LVM_SORTITEMS"});
    for (const auto& call : simulator::FaultableCalls()) reached.insert(call.name);
    EXPECT_EQ(reached, expected);
}

TEST(SimulatorDeathTest, NamesWhatEndsTheProgram) {
    const std::string missing = "does not implement ";
    EXPECT_DEATH(GetSystemMetrics(77), missing + "GetSystemMetrics with index 77");
    EXPECT_DEATH(CreateEventA(nullptr, TRUE, TRUE, "n"), missing + "CreateEventA with a name");
    const HWND dialog = CreateDialogParamA(nullptr, MAKEINTRESOURCEA(100), nullptr, nullptr, 0);
    ASSERT_TRUE(dialog);
    EXPECT_DEATH(SendMessageA(dialog, 0x3F0, 0, 0), missing + "DefWindowProcA for message 1008");
    EXPECT_DEATH(SendMessageA(GetDlgItem(dialog, 1000), LVM_FIRST + 200, 0, 0),
                 missing + "list view message 200");
    DestroyWindow(dialog);
    const auto lockTwice = [] {
        const auto lock = simulator::LockState();
        const auto again = simulator::LockState();
    };
    EXPECT_DEATH(lockTwice(), "taken at .*simulator_test.* and again at .*simulator_test");
}

std::atomic<int> g_passes{0};

unsigned Poll(void* stop) {
    while (WaitForSingleObject(stop, 5000) == WAIT_TIMEOUT) ++g_passes;
    return 0;
}

TEST(Clock, StopsAtEachDeadlineUntilAllThreadsAreIdle) {
    simulator::Clock::SetManual(simulator::kUnixEpoch);
    const HANDLE stop = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    const auto thread =
        reinterpret_cast<HANDLE>(_beginthreadex(nullptr, 0, Poll, stop, 0, nullptr));
    simulator::Clock::Advance(59'999ms);
    EXPECT_EQ(g_passes, 11);
    simulator::Clock::Advance(1ms);
    EXPECT_EQ(g_passes, 12);
    SetEvent(stop);
    simulator::WaitUntilIdle();
    EXPECT_EQ(WaitForSingleObject(thread, 0), WAIT_OBJECT_0);
}

}  // namespace
