// The behaviours of the kernel half of the Win32 API that this system relies on. The tests use the
// API alone and run against the simulator and against Windows' own libraries.
#include <io.h>
#include <msi.h>
#include <objbase.h>
#include <oleauto.h>
#include <process.h>
#include <share.h>

#include "wine.h"

namespace {

// Of its own for each process, since several run at a time.
const std::string g_testKey = "Software\\KernelContract" + std::to_string(GetCurrentProcessId());

// A key of the user's that is there, empty, for one test.
class Registry : public testing::Test {
protected:
    Registry() : key(Create(HKEY_CURRENT_USER, g_testKey.c_str())) {}
    ~Registry() override {
        RegCloseKey(key);
        RegDeleteTreeA(HKEY_CURRENT_USER, g_testKey.c_str());
        CloseHandle(event);
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

    LONG Arm(HKEY armed) {
        return RegNotifyChangeKeyValue(armed, TRUE, REG_NOTIFY_CHANGE_LAST_SET, event, TRUE);
    }

    const HKEY key;
    const HANDLE event = CreateEventA(nullptr, FALSE, FALSE, nullptr);
};

TEST_F(Registry, ValuesAreFoundByNameAndKeepTypeAndBytes) {
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
    for (const auto& each : cases) {
        BYTE data[16];
        DWORD type = 0, size = sizeof data;
        ASSERT_EQ(RegQueryValueExA(key, each.name.c_str(), nullptr, &type, data, &size), 0);
        EXPECT_EQ(type, each.type);
        EXPECT_EQ(std::string(reinterpret_cast<char*>(data), size), each.data);
    }
}

TEST_F(Registry, AWalkFindsEveryValueOnceAndReportsWhatDoesNotFit) {
    std::set<std::string> written, found;
    for (int i = 0; i < 1000; ++i) written.insert("v" + std::to_string(i));
    for (const std::string& each : written) Set(key, each, "some data");
    char name[12];
    BYTE data[12];
    DWORD index = 0, size = sizeof name;
    for (; Enumerate(index, name, size, data) == 0; size = sizeof name, ++index)
        found.emplace(name, size);
    EXPECT_EQ(index, 1000u);
    EXPECT_EQ(found, written);
    EXPECT_EQ(Enumerate(index, name, size, data), ERROR_NO_MORE_ITEMS);
    for (DWORD tooLittle : {2, 8})  // for the name with its NUL, for the data
        EXPECT_EQ(Enumerate(0, name, tooLittle, data), ERROR_MORE_DATA);
    EXPECT_EQ(RegQueryValueExA(key, "v0", nullptr, nullptr, data, &(size = 8)), ERROR_MORE_DATA);
    EXPECT_EQ(size, 9u) << "what it takes";
}

TEST_F(Registry, ANotificationFiresOnceForValuesOfTheSubtreeAndAtTheClose) {
    const HKEY sub = Create(key, "sub");
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
    for (const auto& step : steps) {
        EXPECT_TRUE(!step.armed || Arm(step.armed) == 0) << step.what;
        step.act();
        const DWORD outcome = WaitForSingleObject(event, step.fires ? 5000 : 50);
        EXPECT_EQ(outcome, step.fires ? WAIT_OBJECT_0 : DWORD{WAIT_TIMEOUT}) << step.what;
    }
    SetEvent(event);
    ASSERT_EQ(Arm(key), 0);
    EXPECT_EQ(WaitForSingleObject(event, 0), DWORD{WAIT_TIMEOUT}) << "arming resets the event";
}

TEST_F(Registry, ADeletedKeyFailsForEverAndItsNotificationFires) {
    ASSERT_EQ(Arm(key), 0);
    ASSERT_EQ(RegDeleteTreeA(HKEY_CURRENT_USER, g_testKey.c_str()), 0);
    // Windows documents the deletion as a change; Wine sets no event.
    EXPECT_EQ(WaitForSingleObject(event, IsWine() ? 0 : 5000),
              IsWine() ? DWORD{WAIT_TIMEOUT} : WAIT_OBJECT_0);
    const HKEY again = Create(HKEY_CURRENT_USER, g_testKey.c_str());
    EXPECT_EQ(Set(again, "v", "1"), 0);
    EXPECT_EQ(Set(key, "v", "1"), ERROR_KEY_DELETED);
    EXPECT_EQ(Arm(key), ERROR_KEY_DELETED);
    RegCloseKey(again);
}

TEST_F(Registry, KeysAndValuesAreDescribed) {
    HKEY opened = nullptr;
    DWORD disposition = 0, values = 0, number = 0, size = sizeof number;
    EXPECT_EQ(RegOpenKeyExA(key, "none", 0, KEY_READ, &opened), ERROR_FILE_NOT_FOUND);
    for (const auto& [path, expected] :
         {std::pair{"a\\b", REG_CREATED_NEW_KEY}, {"A\\B", REG_OPENED_EXISTING_KEY}}) {
        RegCreateKeyExA(key, path, 0, nullptr, 0, KEY_READ, nullptr, &opened, &disposition);
        EXPECT_EQ(disposition, DWORD(expected));
        EXPECT_EQ(RegCloseKey(opened), 0);
        EXPECT_EQ(RegCloseKey(opened), ERROR_INVALID_HANDLE);
    }
    EXPECT_EQ(RegOpenKeyExA(key, "A", 0, KEY_READ, &opened), 0) << "names have no case";
    RegCloseKey(opened);
    Set(key, "number", std::string("\7\0\0\0", 4), REG_DWORD);
    FILETIME written{}, now{};
    EXPECT_EQ(RegQueryInfoKeyA(key, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &values,
                               nullptr, nullptr, nullptr, &written),
              0);
    GetSystemTimeAsFileTime(&now);
    EXPECT_EQ(values, 1u);
    EXPECT_EQ(written.dwHighDateTime, now.dwHighDateTime);
    auto* bytes = reinterpret_cast<BYTE*>(&number);
    EXPECT_EQ(RegQueryValueExW(key, L"NUMBER", nullptr, nullptr, bytes, &size), 0);
    EXPECT_EQ(number, 7u);
    EXPECT_EQ(RegQueryValueExA(key, "Number", nullptr, nullptr, nullptr, &(size = 0)), 0);
    EXPECT_EQ(size, 4u) << "a null buffer asks for the size";
    RegDeleteValueA(key, "number");
    EXPECT_EQ(RegDeleteValueA(key, "number"), ERROR_FILE_NOT_FOUND);
}

TEST(Waits, AreSatisfiedByTheFirstSignalledObject) {
    const HANDLE handles[] = {CreateEventA(nullptr, FALSE, FALSE, nullptr),
                              CreateEventA(nullptr, TRUE, FALSE, nullptr)};
    const auto wait = [&] { return WaitForMultipleObjects(2, handles, FALSE, 1); };
    EXPECT_EQ(wait(), DWORD{WAIT_TIMEOUT});
    SetEvent(handles[1]);
    SetEvent(handles[0]);
    EXPECT_EQ(wait(), WAIT_OBJECT_0);
    EXPECT_EQ(wait(), WAIT_OBJECT_0 + 1) << "the first one resets itself, the second one does not";
    ResetEvent(handles[1]);
    EXPECT_EQ(wait(), DWORD{WAIT_TIMEOUT});
    EXPECT_TRUE(CloseHandle(handles[1]));
    EXPECT_EQ(WaitForSingleObject(handles[1], 0), WAIT_FAILED);
    EXPECT_FALSE(CloseHandle(handles[1]));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_HANDLE});
    CloseHandle(handles[0]);
}

CRITICAL_SECTION g_section;

unsigned __stdcall Enter(void* entered) {
    EnterCriticalSection(&g_section);
    *static_cast<DWORD*>(entered) = GetCurrentThreadId();
    LeaveCriticalSection(&g_section);
    Sleep(INFINITE);
    return 0;
}

TEST(Threads, WaitForASectionAndSignalTheirEnd) {
    InitializeCriticalSection(&g_section);
    EnterCriticalSection(&g_section);
    EnterCriticalSection(&g_section);
    static DWORD entered = 0;
    unsigned id = 0;
    const auto thread =
        reinterpret_cast<HANDLE>(_beginthreadex(nullptr, 0, Enter, &entered, 0, &id));
    LeaveCriticalSection(&g_section);
    EXPECT_EQ(WaitForSingleObject(thread, 50), DWORD{WAIT_TIMEOUT});
    EXPECT_EQ(entered, 0u) << "the section was entered twice and left once";
    LeaveCriticalSection(&g_section);
    for (int i = 0; i < 500 && !entered; ++i) Sleep(10);
    EnterCriticalSection(&g_section);
    EXPECT_EQ(entered, id);
    EXPECT_TRUE(TerminateThread(thread, 9));
    EXPECT_EQ(WaitForSingleObject(thread, 5000), WAIT_OBJECT_0);
    CloseHandle(thread);
}

TEST(Mutexes, ExistAsLongAsSomeHandleIsOpen) {
    const std::string name = "Contract" + std::to_string(GetCurrentProcessId());
    HANDLE handles[3];
    const auto create = [](HANDLE& handle, const std::string& name) {
        handle = CreateMutexA(nullptr, FALSE, name.c_str());
        return GetLastError();
    };
    EXPECT_EQ(create(handles[0], name), 0u);
    EXPECT_EQ(create(handles[1], "Global\\" + name), 0u) << "another name space";
    EXPECT_EQ(create(handles[2], "Local\\" + name), DWORD{ERROR_ALREADY_EXISTS});
    for (const HANDLE each : handles) CloseHandle(each);
    EXPECT_EQ(create(handles[0], name), 0u);
    CloseHandle(handles[0]);
}

TEST(Files, AreReadUnlessOpenForWriting) {
    const auto folder = std::filesystem::temp_directory_path();
    const std::string name = "contract" + std::to_string(GetCurrentProcessId());
    const std::string path = (folder / name).string();
    const auto open = [](const std::string& file, DWORD share = FILE_SHARE_READ) {
        return CreateFileA(file.c_str(), GENERIC_READ, share, nullptr, OPEN_EXISTING, 0, nullptr);
    };
    FILE* const writer = _fsopen(path.c_str(), "wb", _SH_DENYNO);
    std::fputs("12345", writer);
    std::fflush(writer);
    EXPECT_EQ(open(path), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_SHARING_VIOLATION});
    EXPECT_TRUE(CloseHandle(open(path, FILE_SHARE_READ | FILE_SHARE_WRITE)));
    std::fclose(writer);
    const HANDLE file = open(path);
    EXPECT_EQ(GetFileSize(file, nullptr), 5u);
    char bytes[8];
    DWORD read = 0;
    for (const DWORD expected : {5, 0}) {
        EXPECT_TRUE(ReadFile(file, bytes, sizeof bytes, &read, nullptr));
        EXPECT_EQ(read, expected);
    }
    FILETIME written{}, now{};
    SYSTEMTIME time{};
    GetSystemTimeAsFileTime(&now);
    EXPECT_TRUE(GetFileTime(file, nullptr, nullptr, &written));
    EXPECT_EQ(written.dwHighDateTime, now.dwHighDateTime);
    EXPECT_TRUE(FileTimeToSystemTime(&written, &time));
    EXPECT_GT(time.wYear, 2024);
    CloseHandle(file);
    EXPECT_EQ(_unlink(path.c_str()), 0);
    EXPECT_EQ(_unlink(path.c_str()), -1);
    const std::pair<std::string, DWORD> cases[] = {{path, ERROR_FILE_NOT_FOUND},
                                                   {path + "/file", ERROR_PATH_NOT_FOUND},
                                                   {folder.string(), ERROR_ACCESS_DENIED}};
    for (const auto& [missing, error] : cases) {
        EXPECT_EQ(open(missing), INVALID_HANDLE_VALUE);
        EXPECT_EQ(GetLastError(), error) << missing;
    }
}

TEST(Modules, AreFoundByNameAndHaveFunctionsAndFiles) {
    EXPECT_EQ(GetModuleHandleA("no_such_library.dll"), nullptr);
    EXPECT_EQ(LoadLibraryA("no_such_library.dll"), nullptr);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_MOD_NOT_FOUND});
    const HMODULE controls = LoadLibraryA("comctl32.dll");
    EXPECT_TRUE(GetProcAddress(controls, "DllGetVersion"));
    EXPECT_EQ(GetProcAddress(controls, "NoSuchFunction"), nullptr);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_PROC_NOT_FOUND});
    EXPECT_TRUE(FreeLibrary(controls));
    char path[MAX_PATH];
    const DWORD length = GetModuleFileNameA(nullptr, path, sizeof path);
    EXPECT_TRUE(std::filesystem::exists(std::string(path, length)));
    EXPECT_EQ(GetModuleFileNameA(nullptr, path, 5), 5u);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INSUFFICIENT_BUFFER});
}

TEST(Texts, SortAsInADictionaryAndMessagesAreAllocated) {
    const char* const ascending[] = {nullptr, "", "_", "1", "a", "A", "b", "B"};
    for (std::size_t i = 1; i < std::size(ascending); ++i) {
        EXPECT_LT(lstrcmpA(ascending[i - 1], ascending[i]), 0) << ascending[i];
        EXPECT_LE(lstrcmpiA(ascending[i - 1], ascending[i]), 0) << ascending[i];
    }
    EXPECT_EQ(lstrcmpiA("Abc", "aBC"), 0);
    constexpr DWORD kFlags = FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_ALLOCATE_BUFFER;
    char* text = nullptr;
    const auto format = [&](DWORD code) {
        return FormatMessageA(kFlags, nullptr, code, 0, reinterpret_cast<LPSTR>(&text), 0, nullptr);
    };
    EXPECT_EQ(format(0xDEADBEEF), 0u);
    const DWORD size = format(ERROR_ACCESS_DENIED);
    EXPECT_TRUE(std::string(text, size).ends_with(".\r\n"));
    EXPECT_EQ(LocalFree(text), nullptr);
}

TEST(Services, FailForWhatIsNotThere) {
    char text[40];
    DWORD size = sizeof text;
    const char* const code = "{00000000-1111-2222-3333-444444444444}";
    EXPECT_EQ(MsiGetProductCodeA(code, text), UINT{ERROR_UNKNOWN_COMPONENT});
    EXPECT_EQ(MsiGetProductInfoA(code, "ProductName", text, &size), UINT{ERROR_UNKNOWN_PRODUCT});
    for (const HRESULT expected : {S_OK, S_FALSE}) EXPECT_EQ(CoInitialize(nullptr), expected);
    for (int i = 0; i < 2; ++i) CoUninitialize();
    OSVERSIONINFOA version{sizeof version, 0, 0, 0, 0, ""};
    EXPECT_TRUE(GetVersionExA(&version));
    HANDLE token = nullptr;
    LUID privilege;
    EXPECT_TRUE(OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token));
    EXPECT_FALSE(LookupPrivilegeValueA(nullptr, "SeNone", &privilege));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_NO_SUCH_PRIVILEGE});
    EXPECT_TRUE(LookupPrivilegeValueA(nullptr, SE_SHUTDOWN_NAME, &privilege));
    CloseHandle(token);
}

TEST(Dates, AutomationDatesAndTexts) {
    const struct {
        SYSTEMTIME time;
        double date;
        BOOL isDate;
    } cases[] = {{{1899, 12, 6, 30, 0, 0, 0, 0}, 0.0, TRUE},
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
    for (const auto& [flags, expected] :
         {std::pair{DATE_SHORTDATE, "3/5/2026"}, {DATE_LONGDATE, "Thursday, March 5, 2026"}}) {
        GetDateFormatA(LOCALE_USER_DEFAULT, DWORD(flags), &time, nullptr, text, sizeof text);
        EXPECT_STREQ(text, expected);
    }
    GetTimeFormatA(LOCALE_USER_DEFAULT, TIME_NOSECONDS, &time, nullptr, text, sizeof text);
    EXPECT_STREQ(text, "3:07 PM");
    EXPECT_EQ(GetTimeFormatA(LOCALE_USER_DEFAULT, TIME_NOSECONDS, &time, nullptr, text, 7), 0);
}

}  // namespace
