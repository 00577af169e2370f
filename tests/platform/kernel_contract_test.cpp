// What the kernel half of the Win32 API promises and this system relies on: the registry with its
// notifications and walks, and dates. It is written on Win32 names alone and runs on both
// platforms, so that Windows' own libraries vouch for what it says of ours.
#include <windows.h>
#include <oleauto.h>

#include <cctype>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

// Of its own for each process, since several run at a time.
const std::string g_testKey = "Software\\KernelContract" + std::to_string(GetCurrentProcessId());

std::string Shouted(std::string text) {
    for (char& c : text) c = static_cast<char>(std::toupper(c));
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
    EXPECT_EQ(RegQueryValueExA(key, "v0", nullptr, nullptr, data, &(size = 8)), ERROR_MORE_DATA);
    EXPECT_EQ(size, 9u) << "what it takes";
}

TEST_F(Registry, ANotificationFiresOnceForValuesOfTheSubtreeAndAtTheClose) {
    const HKEY sub = Create(key, "sub");
    const HANDLE event = CreateEventA(nullptr, FALSE, FALSE, nullptr);
    const auto keys = [&] {
        RegCloseKey(Create(key, "another"));
        RegDeleteTreeA(key, "another");
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
