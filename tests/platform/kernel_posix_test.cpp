// What the simulated machine has beyond Windows: the clock that a test holds, threads that are
// given up, faults on order, and registry and files that other processes change.
#include <windows.h>
#include <msi.h>
#include <objbase.h>
#include <process.h>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "machine/clock.h"
#include "machine/faults.h"
#include "machine/waits.h"
#include "src/module_resources.h"
#include "src/shutdown.h"
#include "src/startups.h"
#include "src/system.h"

using namespace std::chrono_literals;

namespace {

// 1 July 2026, 12:00:00 UTC.
constexpr machine::Ticks kNoon = machine::kUnixEpoch + 1'782'907'200 * machine::kTicksPerSecond;

// Runs the body in another process and waits for its end; that process leaves without ado.
template <class Body>
void InAnotherProcess(Body body) {
    const pid_t child = fork();
    if (child == 0) {
        body();
        _exit(0);
    }
    int status = -1;
    waitpid(child, &status, 0);
    ASSERT_EQ(status, 0);
}

LONG SetValue(HKEY key, const char* name, const std::string& data) {
    return RegSetValueExA(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(data.c_str()),
                          static_cast<DWORD>(data.size() + 1));
}

struct Poller {
    HANDLE stop = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    HANDLE thread = nullptr;
    std::atomic<int> passes{0};

    void Start() {
        thread = reinterpret_cast<HANDLE>(_beginthreadex(nullptr, 0, Run, this, 0, nullptr));
    }
    static unsigned Run(void* self) {
        auto* poller = static_cast<Poller*>(self);
        while (WaitForSingleObject(poller->stop, 5000) == WAIT_TIMEOUT) ++poller->passes;
        return 3;
    }
    ~Poller() {
        CloseHandle(thread);
        CloseHandle(stop);
    }
};

class HeldClock : public testing::Test {
protected:
    HeldClock() { machine::Clock::Hold(kNoon); }
    ~HeldClock() override {
        machine::ClearFaults();
        machine::Clock::Release();
    }
};

TEST_F(HeldClock, APollerMakesExactlyThePassesOfTheTimeThatGoesBy) {
    Poller poller;
    poller.Start();
    machine::Clock::Advance(4999ms);
    EXPECT_EQ(poller.passes, 0);
    machine::Clock::Advance(1ms);
    EXPECT_EQ(poller.passes, 1);
    machine::Clock::Advance(1min);
    EXPECT_EQ(poller.passes, 13);
    SYSTEMTIME now;
    GetSystemTime(&now);
    EXPECT_EQ(now.wMinute * 60 + now.wSecond, 65);
    SetEvent(poller.stop);
    EXPECT_EQ(WaitForSingleObject(poller.thread, INFINITE), WAIT_OBJECT_0);
}

TEST_F(HeldClock, ATerminatedThreadNeverGoesOnAndIsNotReckonedWith) {
    // The thread does not end before the program; its poller must not either.
    static Poller& poller = *new Poller;
    poller.Start();
    machine::Clock::Advance(5s);
    EXPECT_TRUE(TerminateThread(poller.thread, 9));
    DWORD code = 0;
    EXPECT_EQ(WaitForSingleObject(poller.thread, 0), WAIT_OBJECT_0);
    EXPECT_TRUE(GetExitCodeThread(poller.thread, &code));
    EXPECT_EQ(code, 9u);
    SetEvent(poller.stop);
    machine::Clock::Advance(20s);
    EXPECT_EQ(poller.passes, 1);
}

TEST_F(HeldClock, AKeysLastWriteIsTheHeldDate) {
    HKEY key = nullptr;
    RegCreateKeyExA(HKEY_LOCAL_MACHINE, "Held", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key,
                    nullptr);
    SetValue(key, "v", "x");
    FILETIME written;
    RegQueryInfoKeyA(key, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                     nullptr, nullptr, &written);
    EXPECT_EQ(std::int64_t{written.dwHighDateTime} << 32 | written.dwLowDateTime, kNoon);
    RegCloseKey(key);
}

TEST_F(HeldClock, SettlingBringsInWhatOtherProcessesWrote) {
    HKEY key = nullptr;
    ASSERT_EQ(RegCreateKeyExA(HKEY_LOCAL_MACHINE, "Software\\Watched", 0, nullptr, 0,
                              KEY_ALL_ACCESS, nullptr, &key, nullptr),
              0);
    const HANDLE event = CreateEventA(nullptr, FALSE, FALSE, nullptr);
    for (int i = 0; i < 50; ++i) {
        ASSERT_EQ(RegNotifyChangeKeyValue(key, TRUE, REG_NOTIFY_CHANGE_LAST_SET, event, TRUE), 0);
        // A value in a subkey that was not there when the notification was armed.
        InAnotherProcess([&] {
            const std::string folder = std::getenv("WIN32_REGISTRY") +
                                       std::string("/HKEY_LOCAL_MACHINE/software/watched/s");
            std::filesystem::create_directory(folder + std::to_string(i));
            std::ofstream(folder + std::to_string(i) + "/draft") << "12345678";
            std::filesystem::rename(folder + std::to_string(i) + "/draft",
                                    folder + std::to_string(i) + "/=v");
        });
        machine::WorldLock lock = machine::LockWorld();
        machine::Settle(lock);
        lock.unlock();
        ASSERT_EQ(WaitForSingleObject(event, 0), WAIT_OBJECT_0) << i;
    }
    RegCloseKey(key);
    CloseHandle(event);
}

TEST(Processes, ANamedMutexAndAWriterAreSeenFromOutside) {
    const std::string path =
        std::filesystem::temp_directory_path() / ("kernel_posix_" + std::to_string(getpid()));
    std::ofstream(path) << "text";
    const HANDLE mutex = CreateMutexA(nullptr, FALSE, "Local\\KernelPosix");
    InAnotherProcess([&] {
        CreateMutexA(nullptr, FALSE, "Global\\KernelPosix");
        const bool isNew = GetLastError() == ERROR_SUCCESS;
        CreateMutexA(nullptr, FALSE, "KernelPosix");  // the session's, as "Local\" is
        if (!isNew || GetLastError() != ERROR_ALREADY_EXISTS) _exit(1);
    });
    CloseHandle(mutex);
    std::ofstream writer(path, std::ios::app);
    InAnotherProcess([&] {
        const HANDLE file = CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                        OPEN_EXISTING, 0, nullptr);
        if (file != INVALID_HANDLE_VALUE || GetLastError() != ERROR_SHARING_VIOLATION) _exit(1);
    });
    writer.close();
    std::filesystem::remove(path);
}

TEST(Faults, AnOperationFailsAsOftenAsOrderedAndThenWorks) {
    machine::FailNext("RegOpenKeyExA", 1, ERROR_ACCESS_DENIED);
    machine::FailNext("CreateEventA", 1, ERROR_NOT_ENOUGH_MEMORY);
    machine::FailNext("ReadFile", 1, ERROR_INVALID_FUNCTION);
    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyExA(HKEY_LOCAL_MACHINE, "", 0, KEY_READ, &key), ERROR_ACCESS_DENIED);
    EXPECT_EQ(RegOpenKeyExA(HKEY_LOCAL_MACHINE, "", 0, KEY_READ, &key), 0);
    RegCloseKey(key);
    EXPECT_EQ(CreateEventA(nullptr, FALSE, FALSE, nullptr), nullptr);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_NOT_ENOUGH_MEMORY));
    EXPECT_FALSE(ReadFile(nullptr, nullptr, 0, nullptr, nullptr));
    machine::ClearFaults();
}

TEST(Installer, FindsProductsByComponent) {
    HKEY key = nullptr;
    const std::string base = "SOFTWARE\\Installer Simulation\\";
    RegCreateKeyExA(HKEY_LOCAL_MACHINE, (base + "Components\\{c}").c_str(), 0, nullptr, 0,
                    KEY_WRITE, nullptr, &key, nullptr);
    SetValue(key, "Product", "{p}");
    RegCloseKey(key);
    RegCreateKeyExA(HKEY_LOCAL_MACHINE, (base + "Products\\{p}").c_str(), 0, nullptr, 0, KEY_WRITE,
                    nullptr, &key, nullptr);
    SetValue(key, "InstalledProductName", "Agent");
    RegCloseKey(key);
    char text[39];
    DWORD size = sizeof text;
    EXPECT_EQ(MsiGetProductCodeA("{x}", text), static_cast<UINT>(ERROR_UNKNOWN_COMPONENT));
    ASSERT_EQ(MsiGetProductCodeA("{c}", text), 0u);
    EXPECT_EQ(MsiGetProductInfoA("{p}", "VersionString", text, &size),
              static_cast<UINT>(ERROR_UNKNOWN_PROPERTY));
    ASSERT_EQ(MsiGetProductInfoA("{p}", "InstalledProductName", text, &size), 0u);
    EXPECT_STREQ(text, "Agent");
    size = 5;
    EXPECT_EQ(MsiGetProductInfoA("{p}", "InstalledProductName", text, &size),
              static_cast<UINT>(ERROR_MORE_DATA));
    EXPECT_EQ(size, 5u);
}

TEST(Process, KnowsItsWindowsAndCountsWhatItHasStarted) {
    OSVERSIONINFOA version = {};
    version.dwOSVersionInfoSize = sizeof version;
    win32::SetWindowsVersion(4, 0);
    EXPECT_TRUE(GetVersionExA(&version));
    EXPECT_EQ(version.dwMajorVersion, 4u);
    EXPECT_EQ(CoInitialize(nullptr), S_OK);
    EXPECT_EQ(CoInitialize(nullptr), S_FALSE);
    EXPECT_EQ(win32::ComStartups(), 2);
    for (int i = 0; i < 3; ++i) CoUninitialize();
    EXPECT_EQ(win32::ComStartups(), 0);
}

TEST(Shutdown, IsRecordedAndNotCarriedOut) {
    ASSERT_TRUE(ExitWindowsEx(EWX_REBOOT | EWX_FORCE, 0x80040003));
    const auto lock = machine::LockWorld();
    ASSERT_EQ(win32::RequestedShutdowns().size(), 1u);
    EXPECT_EQ(win32::RequestedShutdowns()[0].reason, 0x80040003);
}

// Every way of cutting or changing the file must be survived; the sanitizers look on.
TEST(Resources, BrokenFilesHoldNothingThatLiesOutside) {
    char path[MAX_PATH];
    GetModuleFileNameA(nullptr, path, sizeof path);
    const auto version = win32::FindModuleResource(nullptr, 16, 1);
    ASSERT_FALSE(version.empty());
    const auto word = [](std::size_t value) { return static_cast<std::byte>(value & 0xFF); };
    std::vector<std::byte> script(64);
    script[4] = std::byte{32};
    for (const std::size_t at : {8, 9, 12, 13}) script[at] = std::byte{0xFF};
    for (int i = 0; i < 2; ++i)
        script[32 + static_cast<std::size_t>(i)] = word(version.size() >> 8 * i);
    script[36] = std::byte{32};
    for (const std::size_t at : {40, 41, 44, 45}) script[at] = std::byte{0xFF};
    script[42] = std::byte{16};
    script[46] = std::byte{1};
    script.insert(script.end(), version.begin(), version.end());
    ASSERT_EQ(win32::ResourceFile(script).Find(16, 1).size(), version.size());
    for (std::size_t size = 0; size < script.size(); ++size)
        EXPECT_TRUE(win32::ResourceFile({script.begin(), script.begin() + static_cast<long>(size)})
                        .Find(16, 1)
                        .empty());

    const std::string broken =
        std::filesystem::temp_directory_path() / ("broken_" + std::to_string(getpid()) + ".res");
    for (std::size_t at = 0; at < version.size(); at += 3) {
        std::vector<std::byte> bytes = script;
        bytes[64 + at] ^= std::byte{0xFF};
        std::ofstream(broken, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()), static_cast<long>(bytes.size()));
        std::vector<char> block(GetFileVersionInfoSizeA(broken.c_str(), nullptr));
        if (!GetFileVersionInfoA(broken.c_str(), 0, static_cast<DWORD>(block.size()), block.data()))
            continue;
        void* value = nullptr;
        UINT length = 0;
        for (const char* query :
             {"\\", "\\VarFileInfo\\Translation", "\\StringFileInfo\\040904B0\\ProductVersion"}) {
            if (!VerQueryValueA(block.data(), query, &value, &length)) continue;
            EXPECT_LE(static_cast<char*>(value) + length, block.data() + block.size());
        }
    }
    std::filesystem::remove(broken);
}

TEST(Registry, TenThousandValuesAreWalkedInAFractionOfASecond) {
    HKEY key = nullptr;
    RegCreateKeyExA(HKEY_LOCAL_MACHINE, "Large", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key,
                    nullptr);
    for (int i = 0; i < 10'000; ++i) SetValue(key, std::to_string(i).c_str(), "x");
    const auto start = std::chrono::steady_clock::now();
    char name[16];
    DWORD count = 0;
    for (DWORD size = sizeof name;
         RegEnumValueA(key, count, name, &size, nullptr, nullptr, nullptr, nullptr) == 0;
         size = sizeof name)
        ++count;
    EXPECT_EQ(count, 10'000u);
    EXPECT_LT(std::chrono::steady_clock::now() - start, 5s);  // also with sanitizers
    RegCloseKey(key);
}

}  // namespace
