// What the simulated machine has beyond Windows: the clock that a test holds, threads that are
// given up, and registry, mutexes and files that other processes use, and modules
// whose bytes nobody vouches for.
#include <windows.h>
#include <objbase.h>
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
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "machine/clock.h"
#include "machine/waits.h"
#include "src/module_resources.h"
#include "src/startups.h"
#include "src/system.h"

using namespace std::chrono_literals;
using machine::Clock;

namespace {

// Runs the body in another process, which leaves without ado, and tells whether it gave true.
template <class Body>
bool InAnotherProcess(Body body) {
    const pid_t child = fork();
    if (child == 0) _exit(body() ? 0 : 1);
    int status = -1;
    waitpid(child, &status, 0);
    return status == 0;
}

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

TEST_F(HeldClock, APollerMakesThePassesOfTheTimeThatGoesByUntilItIsGivenUp) {
    const HANDLE stop = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    const auto thread =
        reinterpret_cast<HANDLE>(_beginthreadex(nullptr, 0, Poll, stop, 0, nullptr));
    for (const auto& [span, passes] :
         {std::pair{std::chrono::milliseconds(4999), 0}, {1ms, 1}, {60'000ms, 13}}) {
        Clock::Advance(span);
        EXPECT_EQ(g_passes, passes);
    }
    SYSTEMTIME now;
    GetSystemTime(&now);
    EXPECT_EQ(now.wMinute * 60 + now.wSecond, 65);
    EXPECT_TRUE(TerminateThread(thread, 9));
    DWORD code = 0;
    EXPECT_EQ(WaitForSingleObject(thread, 0), WAIT_OBJECT_0);
    EXPECT_TRUE(GetExitCodeThread(thread, &code));
    EXPECT_EQ(code, 9u);
    SetEvent(stop);
    Clock::Advance(20s);
    EXPECT_EQ(g_passes, 13);
    CloseHandle(thread);
    CloseHandle(stop);
}

TEST_F(HeldClock, SettlingBringsInWhatOtherProcessesWrote) {
    HKEY key = nullptr;
    ASSERT_EQ(RegCreateKeyExA(HKEY_LOCAL_MACHINE, "Software\\Watched", 0, nullptr, 0,
                              KEY_ALL_ACCESS, nullptr, &key, nullptr),
              0);
    const HANDLE event = CreateEventA(nullptr, FALSE, FALSE, nullptr);
    const std::string folder =
        std::getenv("WIN32_REGISTRY") + std::string("/HKEY_LOCAL_MACHINE/software/watched/s");
    for (int i = 0; i < 50; ++i) {
        ASSERT_EQ(RegNotifyChangeKeyValue(key, TRUE, REG_NOTIFY_CHANGE_LAST_SET, event, TRUE), 0);
        // A value in a subkey that was not there when the notification was armed.
        ASSERT_TRUE(InAnotherProcess([&] {
            const std::string subkey = folder + std::to_string(i);
            std::filesystem::create_directory(subkey);
            std::ofstream(subkey + "/draft") << "12345678";
            std::filesystem::rename(subkey + "/draft", subkey + "/=v");
            return true;
        }));
        machine::WorldLock lock = machine::LockWorld();
        machine::Settle(lock);
        lock.unlock();
        ASSERT_EQ(WaitForSingleObject(event, 0), WAIT_OBJECT_0) << i;
    }
    RegCloseKey(key);
    CloseHandle(event);
}

// Wine leaves such a notification asleep, Windows does not.
TEST(Processes, AWatchedKeyThatGoesSignalsAndIsWatchedNoMore) {
    HKEY key = nullptr;
    RegCreateKeyExA(HKEY_LOCAL_MACHINE, "Software\\Gone", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                    &key, nullptr);
    const HANDLE event = CreateEventA(nullptr, FALSE, FALSE, nullptr);
    const auto arm = [&] {
        return RegNotifyChangeKeyValue(key, TRUE, REG_NOTIFY_CHANGE_LAST_SET, event, TRUE);
    };
    ASSERT_EQ(arm(), 0);
    ASSERT_EQ(RegDeleteKeyA(HKEY_LOCAL_MACHINE, "Software\\Gone"), 0);
    EXPECT_EQ(WaitForSingleObject(event, 5000), WAIT_OBJECT_0);
    EXPECT_EQ(arm(), ERROR_KEY_DELETED);
    RegCloseKey(key);
    CloseHandle(event);
}

TEST(Processes, ANamedMutexAndAWriterAreSeenFromOutside) {
    const HANDLE mutex = CreateMutexA(nullptr, FALSE, "Local\\KernelPosix");
    const auto isThere = [](const char* name) {
        CreateMutexA(nullptr, FALSE, name);
        return GetLastError() == ERROR_ALREADY_EXISTS;
    };
    EXPECT_FALSE(InAnotherProcess([&] { return isThere("Global\\KernelPosix"); }));
    EXPECT_TRUE(InAnotherProcess([&] { return isThere("KernelPosix"); })) << "as Local\\ is";
    CloseHandle(mutex);

    const std::string path =
        std::filesystem::temp_directory_path() / ("kernel_posix_" + std::to_string(getpid()));
    std::ofstream writer(path);
    EXPECT_TRUE(InAnotherProcess([&] {
        const HANDLE file = CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                        OPEN_EXISTING, 0, nullptr);
        return file == INVALID_HANDLE_VALUE && GetLastError() == ERROR_SHARING_VIOLATION;
    }));
    std::filesystem::remove(path);
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

// Asks a version block that need not be one for all the system asks; the sanitizers look on.
void Query(const std::string& path) {
    std::vector<char> block(GetFileVersionInfoSizeA(path.c_str(), nullptr));
    if (!GetFileVersionInfoA(path.c_str(), 0, static_cast<DWORD>(block.size()), block.data()))
        return;
    for (const char* query :
         {"\\", "\\VarFileInfo\\Translation", "\\StringFileInfo\\040904B0\\ProductVersion"}) {
        void* value = nullptr;
        UINT length = 0;
        if (VerQueryValueA(block.data(), query, &value, &length)) {
            EXPECT_LE(static_cast<char*>(value) + length, block.data() + block.size());
        }
    }
}

// Each file is cut at every place and has each of its bytes changed.
TEST(Resources, BrokenFilesHoldNothingThatLiesOutside) {
    const auto version = win32::FindModuleResource(nullptr, 16, 1);
    const std::string path =
        std::filesystem::temp_directory_path() / ("broken_" + std::to_string(getpid()));
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
            std::ofstream(path, std::ios::binary)
                .write(reinterpret_cast<const char*>(changed.data()),
                       static_cast<long>(changed.size()));
            Query(path);
        }
    }
    std::filesystem::remove(path);
}

}  // namespace
