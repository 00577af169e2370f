// The two watchers by themselves: what counts as a change, what is posted, how they end.
#include "RegThread.h"
#include "story.h"

namespace {

constexpr UINT kMessage = WM_APP + 1;

// A window on the test's own thread that receives the posts.
class Watchers : public Story {
protected:
    Watchers() {
        m_window = CreateDialogParamA(
            GetModuleHandleA(nullptr), MAKEINTRESOURCEA(IDD_MAINDLG), nullptr,
            [](HWND, UINT, WPARAM, LPARAM) -> INT_PTR { return FALSE; }, 0);
    }
    ~Watchers() override { DestroyWindow(m_window); }

    // The contents that have been posted since the last call.
    std::vector<std::string> Contents() {
        desktop::Advance(0ms);
        std::vector<std::string> contents;
        for (MSG message; PeekMessageA(&message, m_window, kMessage, kMessage, PM_REMOVE);) {
            const std::unique_ptr<char[]> buffer(reinterpret_cast<char*>(message.lParam));
            contents.emplace_back(buffer.get(), message.wParam);
            EXPECT_EQ(buffer[message.wParam], '\0');
        }
        return contents;
    }
    int Posts() {
        desktop::Advance(0ms);
        int posts = 0;
        for (MSG message; PeekMessageA(&message, m_window, kMessage, kMessage, PM_REMOVE); ++posts)
            EXPECT_EQ(message.wParam, reinterpret_cast<WPARAM>(HKEY_LOCAL_MACHINE));
        return posts;
    }
    void WriteAged(const std::string& text, std::chrono::seconds ahead) {
        WriteFile("f", text);
        const auto path = m_agentDirectory / "f";
        std::filesystem::last_write_time(path, std::filesystem::last_write_time(path) + ahead - 1s);
    }
    std::string Path() const { return m_agentDirectory / "f"; }

    HWND m_window;
};

TEST_F(Watchers, AFileChangesWhenItIsLaterThanThePass) {
    CFileThread watcher;
    WriteAged("old", 0s);
    ASSERT_TRUE(watcher.Start(Path().c_str(), m_window, kMessage, true));
    EXPECT_THAT(Contents(), ElementsAre("old")) << "the first pass, whatever the time";
    for (const auto ahead : {0s, -60s}) {
        WriteAged("not later", ahead);
        Pass();
        EXPECT_THAT(Contents(), IsEmpty()) << ahead.count();
    }
    WriteAged("a", 1s);
    WriteAged("b", 2s);
    Pass();
    EXPECT_THAT(Contents(), ElementsAre("b")) << "two writes, one post";
    WriteAged("", 12s);
    desktop::Advance(20s);
    EXPECT_THAT(Contents(), ElementsAre("", "", "")) << "until the clock has passed it";
    watcher.ForceRead();
    EXPECT_THAT(Contents(), IsEmpty()) << "not before the wait is over";
    Pass();
    EXPECT_THAT(Contents(), ElementsAre(""));
    EXPECT_TRUE(watcher.Stop(0) || watcher.Stop(1000)) << "a wait ends at once";
    EXPECT_TRUE(watcher.Stop(0));
}

TEST_F(Watchers, TheFirstPassIsUsedUpByAMissingFile) {
    CFileThread watcher;
    watcher.Start(Path().c_str(), m_window, kMessage, true);
    desktop::Advance(0ms);
    WriteAged("x", 0s);
    Pass();
    EXPECT_THAT(Contents(), IsEmpty());
    watcher.Stop(INFINITE);
}

TEST_F(Watchers, AFileThatCannotBeJudgedIsReadAndOneThatCannotBeReadIsNotPosted) {
    CFileThread watcher;
    WriteAged("x", 0s);
    watcher.Start(Path().c_str(), m_window, kMessage, false);
    for (const char* operation : {"GetFileTime", "FileTimeToSystemTime"}) {
        machine::FailNext(operation, 1, ERROR_INVALID_FUNCTION);
        Pass();
        EXPECT_THAT(Contents(), ElementsAre("x")) << operation;
    }
    for (const char* operation : {"ReadFile", "GetFileSize", "PostMessageA"}) {
        machine::FailNext(operation, 1, ERROR_ACCESS_DENIED);
        watcher.ForceRead();
        Pass();
        EXPECT_THAT(Contents(), IsEmpty()) << operation;
    }
    watcher.Stop(INFINITE);
}

TEST_F(Watchers, APostToAWindowThatIsGoneIsFreed) {
    CFileThread watcher;
    WriteAged("x", 0s);
    watcher.Start(Path().c_str(), nullptr, kMessage, true);
    Pass();
    watcher.Stop(INFINITE);
    // The leak checker has the last word.
}

TEST_F(Watchers, AKeyIsReportedOnceAtTheStartAndThenByItsValues) {
    CRegThread watcher;
    ASSERT_TRUE(watcher.Start(HKEY_LOCAL_MACHINE, kDownloadResultsKey, m_window, kMessage, true));
    EXPECT_EQ(Posts(), 1) << "the closing of the first pass's key is no change";
    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyExA(HKEY_LOCAL_MACHINE, kDownloadResultsKey, 0, KEY_READ, &key), 0)
        << "the watcher has made it";
    RegCloseKey(key);
    Report(kDownloadResultsKey, "a", 0);
    EXPECT_EQ(Posts(), 1);
    EXPECT_TRUE(watcher.Stop(1000));
}

TEST_F(Watchers, AKeyThatCannotBeWatchedIsTriedAgainWithoutHaste) {
    machine::FailNext("RegCreateKeyExA", 2, ERROR_ACCESS_DENIED);
    machine::FailNext("RegNotifyChangeKeyValue", 1, ERROR_ACCESS_DENIED);
    CRegThread watcher;
    watcher.Start(HKEY_LOCAL_MACHINE, kDownloadResultsKey, m_window, kMessage, true);
    desktop::Advance(2900ms);
    EXPECT_EQ(Posts(), 0);
    desktop::Advance(200ms);
    EXPECT_EQ(Posts(), 1);
    watcher.Stop(INFINITE);

    machine::FailNext("RegCreateKeyExA", machine::kEveryCall, ERROR_ACCESS_DENIED);
    CRegThread stoppable;
    stoppable.Start(HKEY_LOCAL_MACHINE, kDownloadResultsKey, m_window, kMessage, true);
    EXPECT_TRUE(stoppable.Stop(1000));
}

TEST_F(Watchers, AThreadThatCannotBeMadeIsNoReasonToFail) {
    machine::FailNext("_beginthreadex", machine::kEveryCall, ERROR_NOT_ENOUGH_MEMORY);
    StartWith({});
    EXPECT_EQ(ExitCode(), std::nullopt);
    EXPECT_EQ(End(), IDCANCEL);
}

}  // namespace
