// What the kernel half of the Win32 API promises and this system relies on: events and waits, the
// registry with its notifications and walks, sharing of files, dates, messages, modules and version
// blocks. It is written on Win32 names alone and runs on both platforms, so that Windows' own
// libraries vouch for what it says of ours.
#include <winsock2.h>
#include <windows.h>
#include <mbstring.h>
#include <oleauto.h>
#include <process.h>
#include <share.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

// Of its own for each process, since several run at a time.
const std::string g_testKey = "Software\\KernelContract" + std::to_string(GetCurrentProcessId());

char Capital(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

// A key of the user's that is there, empty, for one test.
class Registry : public testing::Test {
protected:
    Registry() {
        RegDeleteTreeA(HKEY_CURRENT_USER, g_testKey.c_str());
        RegCreateKeyExA(HKEY_CURRENT_USER, g_testKey.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS,
                        nullptr, &key, nullptr);
    }
    ~Registry() override {
        RegCloseKey(key);
        RegDeleteTreeA(HKEY_CURRENT_USER, g_testKey.c_str());
    }

    LONG Set(const char* name, const std::string& data, DWORD type = REG_BINARY) {
        return RegSetValueExA(key, name, 0, type, reinterpret_cast<const BYTE*>(data.data()),
                              static_cast<DWORD>(data.size()));
    }
    LONG Create(const char* path) {
        HKEY made = nullptr;
        const LONG error =
            RegCreateKeyExA(key, path, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &made, nullptr);
        RegCloseKey(made);
        return error;
    }

    HKEY key = nullptr;
};

TEST_F(Registry, ValuesAreFoundByNameWithoutCaseAndKeepTypeAndBytes) {
    const std::string longName(300, 'n');
    const struct {
        std::string name;
        DWORD type;
        std::string data;
    } cases[] = {{"", REG_SZ, std::string("text\0", 5)},
                 {"C:\\Program Files/a%b.exe", REG_BINARY, std::string("\0\1\2", 3)},
                 {"..", REG_DWORD, std::string("\1\0\0\0", 4)},
                 {longName + "1", REG_BINARY, "one"},
                 {longName + "2", REG_BINARY, ""}};
    for (const auto& each : cases) ASSERT_EQ(Set(each.name.c_str(), each.data, each.type), 0);
    for (const auto& each : cases) {
        std::string name = each.name;
        for (char& c : name) c = Capital(c);
        BYTE data[16];
        DWORD type = 0, size = sizeof data;
        ASSERT_EQ(RegQueryValueExA(key, name.c_str(), nullptr, &type, data, &size), 0) << name;
        EXPECT_EQ(type, each.type);
        EXPECT_EQ(std::string(reinterpret_cast<char*>(data), size), each.data);
    }
    std::string shouted = g_testKey;
    for (char& c : shouted) c = Capital(c);
    HKEY again = nullptr;
    ASSERT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, shouted.c_str(), 0, KEY_READ, &again), 0);
    EXPECT_EQ(RegCloseKey(again), 0);
    EXPECT_EQ(RegCloseKey(again), ERROR_INVALID_HANDLE);
}

TEST_F(Registry, SizesAndErrorsOfQueries) {
    Set("value", "0123456789ab");
    BYTE data[12];
    DWORD size = 4;
    EXPECT_EQ(RegQueryValueExA(key, "value", nullptr, nullptr, data, &size), ERROR_MORE_DATA);
    EXPECT_EQ(size, 12u);
    size = 0;
    EXPECT_EQ(RegQueryValueExA(key, "value", nullptr, nullptr, nullptr, &size), 0);
    EXPECT_EQ(size, 12u);
    EXPECT_EQ(RegQueryValueExA(key, "other", nullptr, nullptr, nullptr, &size),
              ERROR_FILE_NOT_FOUND);
    HKEY missing = nullptr;
    EXPECT_EQ(RegOpenKeyExA(key, "missing", 0, KEY_READ, &missing), ERROR_FILE_NOT_FOUND);

    Set("number", std::string("\7\0\0\0", 4), REG_DWORD);
    Set("text", std::string("1\0", 2), REG_SZ);
    DWORD wide = 0;
    size = sizeof wide;
    EXPECT_EQ(
        RegQueryValueExW(key, L"Number", nullptr, nullptr, reinterpret_cast<BYTE*>(&wide), &size),
        0);
    EXPECT_EQ(wide, 7u);
    EXPECT_EQ(
        RegQueryValueExW(key, L"text", nullptr, nullptr, reinterpret_cast<BYTE*>(&wide), &size), 0);
    EXPECT_EQ(wide, static_cast<DWORD>('1'));
}

TEST_F(Registry, AWalkMeetsEveryValueOnceAndSaysWhatDoesNotFit) {
    constexpr DWORD kCount = 1000;
    for (DWORD i = 0; i < kCount; ++i) Set(("v" + std::to_string(i)).c_str(), "x");
    std::vector<bool> met(kCount);
    char name[16];
    for (DWORD i = 0; i < kCount; ++i) {
        DWORD size = sizeof name;
        ASSERT_EQ(RegEnumValueA(key, i, name, &size, nullptr, nullptr, nullptr, nullptr), 0);
        ASSERT_EQ(size, std::strlen(name));
        met.at(std::stoul(name + 1)) = true;
    }
    EXPECT_EQ(std::count(met.begin(), met.end(), true), kCount);
    DWORD size = sizeof name;
    EXPECT_EQ(RegEnumValueA(key, kCount, name, &size, nullptr, nullptr, nullptr, nullptr),
              ERROR_NO_MORE_ITEMS);

    size = 2;  // room for one character
    EXPECT_EQ(RegEnumValueA(key, 0, name, &size, nullptr, nullptr, nullptr, nullptr),
              ERROR_MORE_DATA);
    for (DWORD i = 0; i < kCount; ++i) RegDeleteValueA(key, ("v" + std::to_string(i)).c_str());
    Set("thirteen", std::string(13, 'x'));
    BYTE data[12];
    DWORD dataSize = sizeof data;
    size = sizeof name;
    EXPECT_EQ(RegEnumValueA(key, 0, name, &size, nullptr, nullptr, data, &dataSize),
              ERROR_MORE_DATA);
}

TEST_F(Registry, ANotificationFiresOnceForValuesOfTheSubtreeAndAtTheClose) {
    ASSERT_EQ(Create("sub"), 0);
    const HANDLE event = CreateEventA(nullptr, FALSE, FALSE, nullptr);
    const auto arm = [&](HKEY on) {
        return RegNotifyChangeKeyValue(on, TRUE, REG_NOTIFY_CHANGE_LAST_SET, event, TRUE);
    };
    HKEY sub = nullptr;
    RegOpenKeyExA(key, "sub", 0, KEY_ALL_ACCESS, &sub);
    const BYTE byte = 1, another = 2;

    ASSERT_EQ(arm(key), 0);
    EXPECT_EQ(Create("another"), 0);
    EXPECT_EQ(RegDeleteKeyA(key, "another"), 0);
    EXPECT_EQ(WaitForSingleObject(event, 50), WAIT_TIMEOUT) << "keys alone do not count";
    RegSetValueExA(sub, "v", 0, REG_BINARY, &byte, 1);
    EXPECT_EQ(WaitForSingleObject(event, 5000), WAIT_OBJECT_0) << "a value below";
    RegSetValueExA(sub, "w", 0, REG_BINARY, &byte, 1);
    EXPECT_EQ(WaitForSingleObject(event, 50), WAIT_TIMEOUT) << "one shot";
    ASSERT_EQ(arm(key), 0);
    RegSetValueExA(sub, "v", 0, REG_BINARY, &another, 1);
    EXPECT_EQ(WaitForSingleObject(event, 5000), WAIT_OBJECT_0) << "replaced";
    ASSERT_EQ(arm(key), 0);
    RegDeleteValueA(sub, "v");
    EXPECT_EQ(WaitForSingleObject(event, 5000), WAIT_OBJECT_0) << "deleted";
    ASSERT_EQ(arm(sub), 0);
    RegCloseKey(sub);
    EXPECT_EQ(WaitForSingleObject(event, 5000), WAIT_OBJECT_0) << "closed";
    SetEvent(event);
    ASSERT_EQ(arm(key), 0);
    EXPECT_EQ(WaitForSingleObject(event, 0), WAIT_TIMEOUT) << "arming resets the event";
    CloseHandle(event);
}

TEST_F(Registry, ADeletedKeyIsSaidToBe) {
    Create("gone");
    HKEY gone = nullptr;
    RegOpenKeyExA(key, "gone", 0, KEY_ALL_ACCESS, &gone);
    EXPECT_EQ(RegDeleteTreeA(key, "gone"), 0);
    DWORD size = 0;
    EXPECT_EQ(RegQueryValueExA(gone, "v", nullptr, nullptr, nullptr, &size), ERROR_KEY_DELETED);
    EXPECT_EQ(RegCloseKey(gone), 0);
}

TEST_F(Registry, TheLastWriteIsNow) {
    FILETIME before, written, after;
    GetSystemTimeAsFileTime(&before);
    Set("v", "x");
    GetSystemTimeAsFileTime(&after);
    DWORD values = 0;
    ASSERT_EQ(RegQueryInfoKeyA(key, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &values,
                               nullptr, nullptr, nullptr, &written),
              0);
    EXPECT_EQ(values, 1u);
    const auto ticks = [](FILETIME time) {
        return static_cast<long long>(ULONGLONG{time.dwHighDateTime} << 32 | time.dwLowDateTime);
    };
    EXPECT_GE(ticks(written), ticks(before));
    EXPECT_LE(ticks(written), ticks(after));
}

unsigned __stdcall SetIt(void* event) {
    SetEvent(event);
    return 7;
}

TEST(Waits, EventsThreadsAndLimits) {
    const HANDLE automatic = CreateEventA(nullptr, FALSE, FALSE, nullptr);
    const HANDLE manual = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    const auto thread =
        reinterpret_cast<HANDLE>(_beginthreadex(nullptr, 0, SetIt, manual, 0, nullptr));
    const HANDLE both[] = {automatic, manual};
    EXPECT_EQ(WaitForMultipleObjects(2, both, FALSE, INFINITE), WAIT_OBJECT_0 + 1);
    EXPECT_EQ(WaitForSingleObject(thread, INFINITE), WAIT_OBJECT_0);
    DWORD code = 0;
    EXPECT_TRUE(GetExitCodeThread(thread, &code));
    EXPECT_EQ(code, 7u);
    SetEvent(automatic);
    EXPECT_EQ(WaitForMultipleObjects(2, both, FALSE, 0), WAIT_OBJECT_0);
    EXPECT_EQ(WaitForSingleObject(automatic, 0), WAIT_TIMEOUT);
    EXPECT_EQ(WaitForSingleObject(manual, 0), WAIT_OBJECT_0);
    for (const HANDLE handle : {automatic, manual, thread}) EXPECT_TRUE(CloseHandle(handle));
    SetLastError(0);
    EXPECT_EQ(WaitForSingleObject(manual, 0), WAIT_FAILED);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_HANDLE));
}

TEST(Waits, ANamedMutexIsThereAsLongAsAHandleIs) {
    const HANDLE first = CreateMutexA(nullptr, FALSE, "Global\\KernelContract");
    EXPECT_EQ(GetLastError(), 0u);
    const HANDLE second = CreateMutexA(nullptr, FALSE, "Global\\KernelContract");
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_ALREADY_EXISTS));
    CloseHandle(first);
    const HANDLE third = CreateMutexA(nullptr, FALSE, "Global\\KernelContract");
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_ALREADY_EXISTS));
    CloseHandle(second);
    CloseHandle(third);
    const HANDLE fourth = CreateMutexA(nullptr, FALSE, "Global\\KernelContract");
    EXPECT_EQ(GetLastError(), 0u);
    CloseHandle(fourth);
}

TEST(Files, AReaderIsKeptOutWhileSomebodyWrites) {
    const std::string folder = std::filesystem::temp_directory_path().string();
    const std::string path = folder + "\\kernel_contract.txt";
    const auto open = [&] {
        return CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                           FILE_ATTRIBUTE_NORMAL, nullptr);
    };
    FILE* writer = _fsopen(path.c_str(), "wb", _SH_DENYNO);
    ASSERT_NE(writer, nullptr);
    std::fputs("content", writer);
    EXPECT_EQ(open(), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_SHARING_VIOLATION));
    std::fclose(writer);

    const HANDLE reader = open();
    const HANDLE another = open();
    ASSERT_NE(reader, INVALID_HANDLE_VALUE);
    EXPECT_NE(another, INVALID_HANDLE_VALUE) << "readers share";
    CloseHandle(another);
    char text[16] = {};
    DWORD count = 0;
    EXPECT_EQ(GetFileSize(reader, nullptr), 7u);
    EXPECT_TRUE(ReadFile(reader, text, sizeof text, &count, nullptr));
    EXPECT_EQ(std::string(text, count), "content");
    FILETIME written;
    SYSTEMTIME time, now;
    EXPECT_TRUE(GetFileTime(reader, nullptr, nullptr, &written));
    EXPECT_TRUE(FileTimeToSystemTime(&written, &time));
    GetSystemTime(&now);
    EXPECT_EQ(time.wYear, now.wYear);
    CloseHandle(reader);
    std::filesystem::remove(folder + "/kernel_contract.txt");
    EXPECT_EQ(open(), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
}

TEST(Dates, AutomationDatesAndTexts) {
    const struct {
        SYSTEMTIME time;
        double date;
        BOOL result;
    } cases[] = {{{1899, 12, 6, 30, 0, 0, 0, 0}, 0.0, TRUE},
                 {{1900, 1, 1, 1, 12, 0, 0, 0}, 2.5, TRUE},
                 {{1899, 12, 5, 29, 6, 0, 0, 0}, -1.25, TRUE},
                 {{2026, 3, 4, 5, 0, 0, 1, 999}, 46086 + 1.0 / 86400, TRUE},
                 {{2024, 2, 4, 30, 0, 0, 0, 0}, 0, FALSE},
                 {{2024, 13, 4, 1, 0, 0, 0, 0}, 0, FALSE}};
    for (SYSTEMTIME time; const auto& each : cases) {
        time = each.time;
        double date = 0;
        if (!each.result && time.wDay == 30) {
            FILETIME unused;
            EXPECT_FALSE(SystemTimeToFileTime(&time, &unused));
            continue;
        }
        EXPECT_EQ(SystemTimeToVariantTime(&time, &date), each.result) << time.wYear;
        EXPECT_DOUBLE_EQ(date, each.date);
    }
    const SYSTEMTIME time{2026, 3, 4, 5, 15, 7, 0, 0};
    char text[64];
    EXPECT_EQ(GetDateFormatA(LOCALE_USER_DEFAULT, DATE_SHORTDATE, &time, nullptr, text, 64), 9);
    EXPECT_STREQ(text, "3/5/2026");
    EXPECT_GT(GetDateFormatA(LOCALE_USER_DEFAULT, DATE_LONGDATE, &time, nullptr, text, 64), 0);
    EXPECT_STREQ(text, "Thursday, March 5, 2026");
    EXPECT_GT(GetTimeFormatA(LOCALE_USER_DEFAULT, TIME_NOSECONDS, &time, nullptr, text, 64), 0);
    EXPECT_STREQ(text, "3:07 PM");
    EXPECT_EQ(GetTimeFormatA(LOCALE_USER_DEFAULT, TIME_NOSECONDS, &time, nullptr, text, 7), 0);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INSUFFICIENT_BUFFER));
}

TEST(Texts, OrderAndMessages) {
    EXPECT_LT(lstrcmpA("a", "B"), 0);
    EXPECT_LT(lstrcmpA("a", "A"), 0);
    EXPECT_EQ(lstrcmpiA("a", "A"), 0);
    EXPECT_LT(lstrcmpiA("9", "a"), 0);
    EXPECT_LT(lstrcmpiA("_", "9"), 0);
    EXPECT_LT(lstrcmpiA("ab", "abc"), 0);
    char text[4096];
    constexpr DWORD kFlags = FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
    const DWORD length = FormatMessageA(kFlags, nullptr, 5, 0, text, sizeof text, nullptr);
    ASSERT_GT(length, 2u);
    EXPECT_STREQ(text + length - 2, "\r\n");
    EXPECT_EQ(FormatMessageA(kFlags, nullptr, 0xEFFF1234, 0, text, sizeof text, nullptr), 0u);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_MR_MID_NOT_FOUND));
}

TEST(Modules, TheProgramIsAModuleWithAVersion) {
    char path[MAX_PATH];
    ASSERT_GT(GetModuleFileNameA(nullptr, path, sizeof path), 0u);
    EXPECT_EQ(GetModuleFileNameA(nullptr, path + 200, 4), 4u) << "cut";
    EXPECT_EQ(LoadLibraryA(""), nullptr);
    EXPECT_EQ(LoadLibraryA("no such library.dll"), nullptr);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_MOD_NOT_FOUND));

    DWORD handle = 1;
    const DWORD size = GetFileVersionInfoSizeA(path, &handle);
    ASSERT_GT(size, 0u);
    std::vector<char> block(size);
    ASSERT_TRUE(GetFileVersionInfoA(path, 0, size, block.data()));
    void* value = nullptr;
    UINT length = 0;
    ASSERT_TRUE(VerQueryValueA(block.data(), "\\", &value, &length));
    EXPECT_EQ(length, sizeof(VS_FIXEDFILEINFO));
    EXPECT_EQ(static_cast<VS_FIXEDFILEINFO*>(value)->dwProductVersionMS, 0x00040002u);
    ASSERT_TRUE(VerQueryValueA(block.data(), "\\VarFileInfo\\Translation", &value, &length));
    EXPECT_EQ(length, 4u);
    ASSERT_TRUE(VerQueryValueA(block.data(), "\\StringFileInfo\\040904b0\\ProductVersion", &value,
                               &length));
    EXPECT_EQ(length, std::strlen(static_cast<char*>(value)) + 1);
    EXPECT_FALSE(VerQueryValueA(block.data(), "\\StringFileInfo\\040904b0\\None", &value, &length));
    EXPECT_EQ(GetFileVersionInfoSizeA("no such file", &handle), 0u);
}

TEST(Sockets, ErrorsHaveWindowsNumbers) {
    EXPECT_EQ(socket(AF_INET, SOCK_STREAM, 0), INVALID_SOCKET) << "not started";
    EXPECT_EQ(WSAGetLastError(), WSANOTINITIALISED);
    WSADATA data;
    ASSERT_EQ(WSAStartup(0x0202, &data), 0);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(0x7F000001);
    int size = sizeof address;
    const auto* name = reinterpret_cast<const sockaddr*>(&address);
    // A port that was free a moment ago has no listener.
    SOCKET s = socket(AF_INET, SOCK_STREAM, 0);
    ASSERT_EQ(bind(s, name, size), 0);
    getsockname(s, reinterpret_cast<sockaddr*>(&address), &size);
    closesocket(s);
    s = socket(AF_INET, SOCK_STREAM, 0);
    EXPECT_EQ(connect(s, name, size), SOCKET_ERROR);
    EXPECT_EQ(WSAGetLastError(), WSAECONNREFUSED);
    EXPECT_EQ(closesocket(s), 0);
    EXPECT_EQ(send(s, "x", 1, 0), SOCKET_ERROR);
    EXPECT_EQ(WSAGetLastError(), WSAENOTSOCK);
    EXPECT_EQ(WSACleanup(), 0);
}

}  // namespace
