// What the simulated machine has beyond Windows: threads that are given up while a test holds the
// clock, a registry that other processes write, and modules whose bytes nobody vouches for.
#include <windows.h>
#include <process.h>

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <span>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "../fuzz/version_queries.h"
#include "machine/clock.h"
#include "machine/waits.h"
#include "src/module_resources.h"

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
    ASSERT_EQ(RegDeleteKeyA(HKEY_LOCAL_MACHINE, "Software\\Watched"), 0);
    EXPECT_TRUE(HasFired());
    EXPECT_EQ(Arm(), ERROR_KEY_DELETED);
}

using Bytes = std::vector<std::byte>;

// A file of numbers, each behind its offset, and the rest behind the last of them.
Bytes File(const std::vector<DWORD>& numbers, std::span<const std::byte> rest) {
    Bytes file(numbers[numbers.size() - 2] + sizeof(DWORD));
    for (std::size_t i = 0; i < numbers.size(); i += 2)
        std::memcpy(&file[numbers[i]], &numbers[i + 1], sizeof(DWORD));
    file.insert(file.end(), rest.begin(), rest.end());
    return file;
}

// Each file is cut at every place and has each of its bytes changed.
TEST(Resources, BrokenFilesHoldNothingThatLiesOutside) {
    const auto version = win32::FindModuleResource(nullptr, 16, 1);
    const auto size = static_cast<DWORD>(version.size());
    const Bytes script = File({4, 32, 8, 0xFFFF, 12, 0xFFFF,  // an empty entry
                               32, size, 36, 32, 40, 0x10FFFF, 44, 0x1FFFF, 60, 0},  // the block's
                              version);
    const auto scriptSize = static_cast<DWORD>(script.size());
    const Bytes library = File({0,   0x464C457F, 4,   2,          40,  64, 60, 2,  // two sections:
                                64,  11,         88,  192,                         // the names,
                                152, 204,        160, scriptSize,                  // the script;
                                192, 0x6E69772E, 196, 0x65723233, 200, 's'},       // its name
                               script);
    const DWORD sectionSize = 88 + size, place = 4096 + 88;
    const Bytes program =
        File({0,   0x5A4D,  60,  64,          64,  0x4550,     68, 0x10000,  // one section
              84,  224,     88,  0x10B,       200, 4096,        // the resources' address
              324, 4096,    328, sectionSize, 332, 400,         // the section
              412, 0x10000, 416, 16,          420, 0x80000018,  // the types,
              436, 0x10000, 440, 1,           444, 0x80000030,  // the names,
              460, 0x10000, 468, 72,                            // the languages,
              472, place,   476, size,        484, 0},          // and the block's place
             version);
    for (const Bytes& file : {script, library, program}) {
        const auto found = win32::ResourceFile(file);
        ASSERT_TRUE(std::ranges::equal(found.Find(16, 1), version)) << file.size();
        for (std::size_t at = 0; at < file.size(); ++at) {
            EXPECT_TRUE(win32::ResourceFile({file.begin(), file.begin() + static_cast<long>(at)})
                            .Find(16, 1)
                            .empty());
            Bytes changed = file;
            changed[at] ^= std::byte{0xFF};
            EXPECT_TRUE(VersionQueriesStayWithin(changed)) << at;
        }
    }
}

}  // namespace
