// What the simulated machine has beyond Windows: threads that are given up while a test holds the
// clock, a registry that other processes write, and version blocks in files of each kind.
#include <windows.h>
#include <process.h>

#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include <gtest/gtest.h>

#include "machine/clock.h"
#include "machine/waits.h"

using namespace std::chrono_literals;
using machine::Clock;

namespace {

class HeldClock : public testing::Test {
protected:
    HeldClock() { Clock::Hold(machine::kUnixEpoch); }
    ~HeldClock() override { Clock::Release(); }
};

std::atomic<int> g_passes{0};

unsigned Poll(void* stop) {
    while (WaitForSingleObject(stop, 5000) == WAIT_TIMEOUT) ++g_passes;
    return 3;
}

TEST_F(HeldClock, AThreadThatIsGivenUpHasEndedAndNeverComesBack) {
    const HANDLE stop = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    const auto thread =
        reinterpret_cast<HANDLE>(_beginthreadex(nullptr, 0, Poll, stop, 0, nullptr));
    Clock::Advance(60s);
    EXPECT_EQ(g_passes, 12);
    EXPECT_TRUE(TerminateThread(thread, 9));
    EXPECT_EQ(WaitForSingleObject(thread, 0), WAIT_OBJECT_0);
    Clock::Advance(20s);
    EXPECT_EQ(g_passes, 12);
    CloseHandle(thread);
    CloseHandle(stop);
}

class WatchedKey : public HeldClock {
protected:
    WatchedKey() {
        RegCreateKeyExA(HKEY_LOCAL_MACHINE, "Software\\Watched", 0, nullptr, 0, KEY_ALL_ACCESS,
                        nullptr, &m_key, nullptr);
    }
    ~WatchedKey() override {
        RegCloseKey(m_key);
        CloseHandle(m_event);
    }

    LONG Arm() const {
        return RegNotifyChangeKeyValue(m_key, TRUE, REG_NOTIFY_CHANGE_LAST_SET, m_event, TRUE);
    }
    bool HasFired() const {
        machine::WorldLock lock = machine::LockWorld();
        machine::Settle(lock);
        lock.unlock();
        return WaitForSingleObject(m_event, 0) == WAIT_OBJECT_0;
    }

    HKEY m_key = nullptr;
    const HANDLE m_event = CreateEventA(nullptr, FALSE, FALSE, nullptr);
};

TEST_F(WatchedKey, SettlingBringsInWhatOtherProcessesWrote) {
    const std::string folder =
        std::getenv("WIN32_REGISTRY") + std::string("/HKEY_LOCAL_MACHINE/software/watched/s");
    for (int i = 0; i < 50; ++i) {
        ASSERT_EQ(Arm(), 0);
        const pid_t child = fork();
        if (child == 0) {
            // A value in a subkey that was not there when the notification was armed.
            const std::string subkey = folder + std::to_string(i);
            std::filesystem::create_directory(subkey);
            std::ofstream(subkey + "/draft") << "12345678";
            std::filesystem::rename(subkey + "/draft", subkey + "/=v");
            _exit(0);
        }
        waitpid(child, nullptr, 0);
        ASSERT_TRUE(HasFired()) << i;
    }
}

// Wine leaves such a notification asleep, Windows does not.
TEST_F(WatchedKey, ThatGoesFiresAndIsWatchedNoMore) {
    ASSERT_EQ(Arm(), 0);
    ASSERT_EQ(RegDeleteTreeA(HKEY_LOCAL_MACHINE, "Software\\Watched"), 0);
    EXPECT_TRUE(HasFired());
    EXPECT_EQ(Arm(), ERROR_KEY_DELETED);
}

TEST(Resources, AreFoundInScriptsLibrariesAndPrograms) {
    for (const auto& file : std::filesystem::directory_iterator(VERSION_SEEDS))
        EXPECT_GT(GetFileVersionInfoSizeA(file.path().c_str(), nullptr), 92u) << file;
}

}  // namespace
