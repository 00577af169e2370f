// What the kernel half of the Win32 API promises and this system relies on: events and waits, the
// registry with its notifications and walks, sharing of files, dates, the order of texts and
// version blocks. It is written on Win32 names alone and runs on both platforms, so that Windows'
// own libraries vouch for what it says of ours.
#include <windows.h>
#include <mbstring.h>
#include <oleauto.h>
#include <share.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace {

// Of its own for each process, since several run at a time.
const std::string g_testKey = "Software\\KernelContract" + std::to_string(GetCurrentProcessId());

char Capital(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

long long Ticks(FILETIME time) {
    return static_cast<long long>(ULONGLONG{time.dwHighDateTime} << 32 | time.dwLowDateTime);
}

std::string Shouted(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), Capital);
    return text;
}

// A key of the user's that is there, empty, for one test.
class Registry : public testing::Test {
protected:
    Registry() : key(Create(HKEY_CURRENT_USER, g_testKey.c_str())) {}
    ~Registry() override {
        RegCloseKey(key);
        RegDeleteTreeA(HKEY_CURRENT_USER, g_testKey.c_str());
    }

    static HKEY Create(HKEY parent, const char* path) {
        HKEY made = nullptr;
        RegCreateKeyExA(parent, path, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &made, nullptr);
        return made;
    }
    static LONG Set(HKEY key, const std::string& name, const std::string& data,
                    DWORD type = REG_BINARY) {
        return RegSetValueExA(key, name.c_str(), 0, type,
                              reinterpret_cast<const BYTE*>(data.data()),
                              static_cast<DWORD>(data.size()));
    }
    // Of a value the name and the data, each with room for `size` bytes.
    LONG Enumerate(DWORD index, char* name, DWORD& size, BYTE* data) {
        DWORD dataSize = size;
        return RegEnumValueA(key, index, name, &size, nullptr, nullptr, data, &dataSize);
    }

    const HKEY key;
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
    for (const auto& each : cases) ASSERT_EQ(Set(key, each.name, each.data, each.type), 0);
    HKEY again = nullptr;
    ASSERT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, Shouted(g_testKey).c_str(), 0, KEY_READ, &again), 0);
    for (const auto& each : cases) {
        BYTE data[16];
        DWORD type = 0, size = sizeof data;
        ASSERT_EQ(RegQueryValueExA(again, Shouted(each.name).c_str(), nullptr, &type, data, &size),
                  0);
        EXPECT_EQ(type, each.type);
        EXPECT_EQ(std::string(reinterpret_cast<char*>(data), size), each.data);
    }
    EXPECT_EQ(RegCloseKey(again), 0);
    EXPECT_EQ(RegCloseKey(again), ERROR_INVALID_HANDLE);
}

TEST_F(Registry, SizesAndErrorsOfQueries) {
    Set(key, "value", "0123456789ab");
    BYTE data[12];
    DWORD size = 4;
    EXPECT_EQ(RegQueryValueExA(key, "value", nullptr, nullptr, data, &size), ERROR_MORE_DATA);
    EXPECT_EQ(size, 12u);
    size = 0;
    EXPECT_EQ(RegQueryValueExA(key, "value", nullptr, nullptr, nullptr, &size), 0);
    EXPECT_EQ(size, 12u);
    HKEY other = nullptr;
    EXPECT_EQ(RegOpenKeyExA(key, "other", 0, KEY_READ, &other), ERROR_FILE_NOT_FOUND);
    other = Create(key, "other");
    EXPECT_EQ(RegDeleteTreeA(key, "other"), 0);
    EXPECT_EQ(RegQueryValueExA(other, "v", nullptr, nullptr, nullptr, &size), ERROR_KEY_DELETED);
    EXPECT_EQ(RegCloseKey(other), 0);

    Set(key, "number", std::string("\7\0\0\0", 4), REG_DWORD);
    DWORD wide = 0;
    size = sizeof wide;
    EXPECT_EQ(
        RegQueryValueExW(key, L"Number", nullptr, nullptr, reinterpret_cast<BYTE*>(&wide), &size),
        0);
    EXPECT_EQ(wide, 7u);
}

TEST_F(Registry, AWalkMeetsEveryValueOnceAndSaysWhatDoesNotFit) {
    std::set<std::string> written, met;
    for (int i = 0; i < 1000; ++i) written.insert("v" + std::to_string(i));
    for (const std::string& each : written) Set(key, each, "some data");
    char name[12];
    BYTE data[12];
    DWORD index = 0, size = sizeof name;
    for (; Enumerate(index, name, size, data) == 0; size = sizeof name, ++index)
        met.emplace(name, size);
    EXPECT_EQ(index, 1000u);
    EXPECT_EQ(met, written);
    EXPECT_EQ(Enumerate(index, name, size, data), ERROR_NO_MORE_ITEMS);
    for (DWORD tooLittle : {2, 8})  // for the name with its NUL, for the data
        EXPECT_EQ(Enumerate(0, name, tooLittle, data), ERROR_MORE_DATA);
}

TEST_F(Registry, ANotificationFiresOnceForValuesOfTheSubtreeAndAtTheClose) {
    const HKEY sub = Create(key, "sub");
    const HANDLE event = CreateEventA(nullptr, FALSE, FALSE, nullptr);
    const auto keys = [&] {
        RegCloseKey(Create(key, "another"));
        RegDeleteKeyA(key, "another");
    };
    const struct {
        const char* what;
        std::function<void()> act;
        bool fires;
        HKEY armed;  // null: not again
    } steps[] = {{"keys alone do not count", keys, false, key},
                 {"a value below", [&] { Set(sub, "v", "1"); }, true, nullptr},
                 {"one shot", [&] { Set(sub, "w", "1"); }, false, nullptr},
                 {"replaced", [&] { Set(sub, "v", "2"); }, true, key},
                 {"deleted", [&] { RegDeleteValueA(sub, "v"); }, true, key},
                 {"closed", [&] { RegCloseKey(sub); }, true, sub}};
    const auto arm = [&](HKEY armed) {
        return RegNotifyChangeKeyValue(armed, TRUE, REG_NOTIFY_CHANGE_LAST_SET, event, TRUE);
    };
    for (const auto& step : steps) {
        EXPECT_TRUE(!step.armed || arm(step.armed) == 0) << step.what;
        step.act();
        const DWORD outcome = WaitForSingleObject(event, step.fires ? 5000 : 50);
        EXPECT_EQ(outcome, step.fires ? WAIT_OBJECT_0 : DWORD{WAIT_TIMEOUT}) << step.what;
    }
    SetEvent(event);
    ASSERT_EQ(arm(key), 0);
    EXPECT_EQ(WaitForSingleObject(event, 0), DWORD{WAIT_TIMEOUT}) << "arming resets the event";
    CloseHandle(event);
}

TEST(Waits, TellWhichEventAndResetTheAutomatic) {
    const HANDLE automatic = CreateEventA(nullptr, FALSE, FALSE, nullptr);
    const HANDLE manual = CreateEventA(nullptr, TRUE, TRUE, nullptr);
    const HANDLE both[] = {automatic, manual};
    EXPECT_EQ(WaitForMultipleObjects(2, both, FALSE, INFINITE), WAIT_OBJECT_0 + 1);
    SetEvent(automatic);
    EXPECT_EQ(WaitForMultipleObjects(2, both, FALSE, 0), WAIT_OBJECT_0);
    EXPECT_EQ(WaitForSingleObject(automatic, 0), DWORD{WAIT_TIMEOUT});
    EXPECT_EQ(WaitForSingleObject(manual, 0), WAIT_OBJECT_0);
    for (const HANDLE handle : both) EXPECT_TRUE(CloseHandle(handle));
    EXPECT_EQ(WaitForSingleObject(manual, 0), WAIT_FAILED);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_HANDLE));
}

TEST(Waits, ANamedMutexIsThereAsLongAsAHandleIs) {
    const auto make = [](DWORD error) {
        const HANDLE mutex = CreateMutexA(nullptr, FALSE, "Global\\KernelContract");
        EXPECT_EQ(GetLastError(), error);
        return mutex;
    };
    const HANDLE first = make(ERROR_SUCCESS);
    const HANDLE second = make(ERROR_ALREADY_EXISTS);
    CloseHandle(first);
    CloseHandle(make(ERROR_ALREADY_EXISTS));
    CloseHandle(second);
    CloseHandle(make(ERROR_SUCCESS));
}

TEST(Files, AReaderIsKeptOutWhileSomebodyWrites) {
    const std::string folder = std::filesystem::temp_directory_path().string();
    const std::string path = folder + "\\kernel_contract.txt";
    const auto open = [&] {
        return CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                           FILE_ATTRIBUTE_NORMAL, nullptr);
    };
    const auto expectRefusal = [&](DWORD error) {
        EXPECT_EQ(open(), INVALID_HANDLE_VALUE);
        EXPECT_EQ(GetLastError(), error);
    };
    FILE* writer = _fsopen(path.c_str(), "wb", _SH_DENYNO);
    ASSERT_NE(writer, nullptr);
    std::fputs("content", writer);
    expectRefusal(ERROR_SHARING_VIOLATION);
    std::fclose(writer);
    const HANDLE reader = open();
    const HANDLE another = open();
    EXPECT_NE(another, INVALID_HANDLE_VALUE) << "readers share";
    CloseHandle(another);
    char text[16] = {};
    DWORD count = 0;
    EXPECT_EQ(GetFileSize(reader, nullptr), 7u);
    EXPECT_TRUE(ReadFile(reader, text, sizeof text, &count, nullptr));
    EXPECT_EQ(std::string(text, count), "content");
    FILETIME written, now;
    EXPECT_TRUE(GetFileTime(reader, nullptr, nullptr, &written));
    GetSystemTimeAsFileTime(&now);
    EXPECT_LT(std::llabs(Ticks(now) - Ticks(written)), 600'000'000) << "a minute";
    CloseHandle(reader);
    std::filesystem::remove(folder + "/kernel_contract.txt");
    expectRefusal(ERROR_FILE_NOT_FOUND);
}

TEST(Dates, AutomationDatesAndTexts) {
    const struct {
        SYSTEMTIME time;
        double date;
        BOOL isDate;
    } cases[] = {{{1899, 12, 6, 30, 0, 0, 0, 0}, 0.0, TRUE},
                 {{1900, 1, 1, 1, 12, 0, 0, 0}, 2.5, TRUE},
                 {{1899, 12, 5, 29, 6, 0, 0, 0}, -1.25, TRUE},
                 {{2026, 3, 4, 5, 0, 0, 1, 999}, 46086 + 1.0 / 86400, TRUE},
                 {{2024, 13, 4, 1, 0, 0, 0, 0}, 0, FALSE}};
    for (const auto& each : cases) {
        SYSTEMTIME time = each.time;
        double date = 0;
        EXPECT_EQ(SystemTimeToVariantTime(&time, &date), each.isDate) << time.wYear;
        EXPECT_DOUBLE_EQ(date, each.date);
    }
    const SYSTEMTIME noSuchDay{2024, 2, 4, 30, 0, 0, 0, 0};
    FILETIME unused;
    EXPECT_FALSE(SystemTimeToFileTime(&noSuchDay, &unused));
    const SYSTEMTIME time{2026, 3, 4, 5, 15, 7, 0, 0};
    char text[64];
    const auto date = [&](DWORD flags) {
        GetDateFormatA(LOCALE_USER_DEFAULT, flags, &time, nullptr, text, sizeof text);
        return std::string(text);
    };
    EXPECT_EQ(date(DATE_SHORTDATE), "3/5/2026");
    EXPECT_EQ(date(DATE_LONGDATE), "Thursday, March 5, 2026");
    GetTimeFormatA(LOCALE_USER_DEFAULT, TIME_NOSECONDS, &time, nullptr, text, sizeof text);
    EXPECT_STREQ(text, "3:07 PM");
    EXPECT_EQ(GetTimeFormatA(LOCALE_USER_DEFAULT, TIME_NOSECONDS, &time, nullptr, text, 7), 0);
}

}  // namespace
