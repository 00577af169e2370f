// The threads of the applet without it. The two watchers: what counts as a change, what is posted,
// how they end. The hover tracker, which the applet does not use: one post when the pointer comes,
// one when it has left.
#include "controller/TrayMouseTrack.h"
#include "story.h"
#include "watchers/RegThread.h"

namespace {

class Watchers : public Receiver {
protected:
    // The contents posted since the last call.
    std::vector<std::string> Contents() {
        std::vector<std::string> contents;
        for (const MSG& message : Received()) {
            const std::unique_ptr<char[]> buffer(reinterpret_cast<char*>(message.lParam));
            contents.emplace_back(buffer.get(), message.wParam);
            EXPECT_EQ(buffer[message.wParam], '\0');
        }
        return contents;
    }
    int Posts() {
        int posts = 0;
        for (const MSG& message : Received())
            posts += message.wParam == reinterpret_cast<WPARAM>(HKEY_LOCAL_MACHINE);
        return posts;
    }
    void WriteAged(const std::string& text, std::chrono::seconds ahead) {
        WriteFile("f", text);
        const auto path = m_agentDirectory / "f";
        std::filesystem::last_write_time(path, std::filesystem::last_write_time(path) + ahead - 1s);
    }
    std::string Path() const { return m_agentDirectory / "f"; }
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
    WriteAged("c", 3s);
    desktop::Advance(4'999ms);
    EXPECT_THAT(Contents(), IsEmpty());
    desktop::Advance(1ms);
    EXPECT_THAT(Contents(), ElementsAre("c")) << "the poll period is five seconds";
    WriteAged("", 12s);
    desktop::Advance(20s);
    EXPECT_THAT(Contents(), ElementsAre("", "", "")) << "until the clock has passed it";
    watcher.ForceRead();
    EXPECT_THAT(Contents(), IsEmpty()) << "not before the wait is over";
    Pass();
    EXPECT_THAT(Contents(), ElementsAre(""));
    watcher.ForceRead();
    EXPECT_TRUE(watcher.Stop(0) || watcher.Stop(1000)) << "a wait ends at once";
    EXPECT_TRUE(watcher.Stop(0));
    EXPECT_THAT(Contents(), IsEmpty()) << "nothing on the way out";
}

TEST_F(Watchers, AMissingFileEndsTheFirstPass) {
    CFileThread watcher;
    watcher.Start(Path().c_str(), m_window, kMessage, true);
    desktop::Advance(0ms);
    WriteAged("x", 0s);
    Pass();
    EXPECT_THAT(Contents(), IsEmpty());
    watcher.Stop(INFINITE);
}

TEST_F(Watchers, AFileWithoutATimeIsReadAndAnUnreadableOneIsNotPosted) {
    CFileThread watcher;
    WriteAged("x", 0s);
    watcher.Start(Path().c_str(), m_window, kMessage, false);
    for (const char* operation : {"GetFileTime", "FileTimeToSystemTime"}) {
        simulator::FailNext(operation, 1, ERROR_INVALID_FUNCTION);
        Pass();
        EXPECT_THAT(Contents(), ElementsAre("x")) << operation;
    }
    for (const char* operation : {"ReadFile", "GetFileSize", "PostMessageA"}) {
        simulator::FailNext(operation, 1, ERROR_ACCESS_DENIED);
        watcher.ForceRead();
        Pass();
        EXPECT_THAT(Contents(), IsEmpty()) << operation;
    }
    watcher.Stop(INFINITE);

    const std::string promisesMore = "/sys/devices/system/cpu/online";
    ASSERT_GT(std::filesystem::file_size(promisesMore), 4000u);
    CFileThread shortened;
    shortened.Start(promisesMore.c_str(), m_window, kMessage, true);
    EXPECT_THAT(Contents(), IsEmpty()) << "fewer bytes than its size says";
    shortened.Stop(INFINITE);
}

TEST_F(Watchers, AWaitThatFailsEndsNoThread) {
    WriteAged("x", 0s);
    CFileThread file;
    simulator::FailNext("WaitForSingleObject", 1, ERROR_INVALID_HANDLE);
    file.Start(Path().c_str(), m_window, kMessage, true);
    EXPECT_THAT(Contents(), ElementsAre());
    desktop::Advance(1s);
    EXPECT_THAT(Contents(), ElementsAre("x")) << "after a pause";
    EXPECT_TRUE(file.Stop(1000));

    CRegThread key;
    simulator::FailNext("WaitForMultipleObjects", 1, ERROR_INVALID_HANDLE);
    key.Start(HKEY_LOCAL_MACHINE, HLX_DOWNLOAD_RESULTS_KEY, m_window, kMessage, false);
    EXPECT_EQ(Posts(), 0);
    Report(HLX_DOWNLOAD_RESULTS_KEY, "a", 0);
    EXPECT_EQ(Posts(), 0) << "the pause";
    desktop::Advance(1s);
    EXPECT_EQ(Posts(), 1);
    EXPECT_TRUE(key.Stop(1000));
}

TEST_F(Watchers, AKeyIsReportedOnceAtTheStartAndThenByItsValues) {
    CRegThread watcher;
    ASSERT_TRUE(
        watcher.Start(HKEY_LOCAL_MACHINE, HLX_DOWNLOAD_RESULTS_KEY, m_window, kMessage, true));
    EXPECT_EQ(Posts(), 1) << "the closing of the first pass's key is no change";
    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyExA(HKEY_LOCAL_MACHINE, HLX_DOWNLOAD_RESULTS_KEY, 0, KEY_READ, &key), 0)
        << "the watcher has made it";
    RegCloseKey(key);
    const std::string below = std::string(HLX_DOWNLOAD_RESULTS_KEY) + "\\below";
    for (const char* changed : {HLX_DOWNLOAD_RESULTS_KEY, below.c_str(), below.c_str()}) {
        Report(changed, "a", 0);
        EXPECT_EQ(Posts(), 1) << changed;
    }
    EXPECT_TRUE(watcher.Stop(1000));
    EXPECT_EQ(Posts(), 0);
}

TEST_F(Watchers, AChangeDuringTheFirstPassIsReportedToo) {
    simulator::BeforeNext(
        "PostMessageA", [] { Report(HLX_DOWNLOAD_RESULTS_KEY, "a", 0); }, kMessage);
    CRegThread watcher;
    watcher.Start(HKEY_LOCAL_MACHINE, HLX_DOWNLOAD_RESULTS_KEY, m_window, kMessage, true);
    EXPECT_EQ(Posts(), 2);
    watcher.Stop(INFINITE);
}

TEST_F(Watchers, AKeyThatCannotBeWatchedIsTriedAgainAfterAPauseAndThenReported) {
    simulator::FailNext("CreateEventA", 1, ERROR_NOT_ENOUGH_MEMORY, simulator::kAnyDetail, 1);
    simulator::FailNext("RegCreateKeyExA", 1, ERROR_ACCESS_DENIED);
    simulator::FailNext("RegNotifyChangeKeyValue", 1, ERROR_ACCESS_DENIED);
    CRegThread watcher;
    watcher.Start(HKEY_LOCAL_MACHINE, HLX_DOWNLOAD_RESULTS_KEY, m_window, kMessage, false);
    desktop::Advance(2900ms);
    EXPECT_EQ(Posts(), 0);
    desktop::Advance(200ms);
    EXPECT_EQ(Posts(), 1) << "what was written meanwhile gave no signal";
    simulator::BeforeNext("RegNotifyChangeKeyValue",
                          [] { RegDeleteTreeA(HKEY_LOCAL_MACHINE, HLX_DOWNLOAD_RESULTS_KEY); });
    Report(HLX_DOWNLOAD_RESULTS_KEY, "a", 0);
    EXPECT_EQ(Posts(), 1);
    Report(HLX_DOWNLOAD_RESULTS_KEY, "b", 0);
    desktop::Advance(1s);
    EXPECT_EQ(Posts(), 1) << "deleted and made again";
    watcher.Stop(0);
    desktop::Advance(2s);  // a wait that a fault has failed is repeated after a pause

    simulator::FailNext("RegCreateKeyExA", simulator::kEveryCall, ERROR_ACCESS_DENIED);
    CRegThread stoppable;
    stoppable.Start(HKEY_LOCAL_MACHINE, HLX_DOWNLOAD_RESULTS_KEY, m_window, kMessage, true);
    stoppable.Stop(0);
    desktop::Advance(0ms);
    EXPECT_TRUE(stoppable.Stop(0)) << "the pause ends with the stop event";
    desktop::Advance(2s);
}

class Tracker : public Receiver {
protected:
    void MoveTo(int x, int y) {
        desktop::MovePointer(x, y);
        m_tracker->OnMouseMove();
    }
    std::vector<LPARAM> Posts() {
        desktop::Advance(1s);
        std::vector<LPARAM> posts;
        for (const MSG& message : Received()) {
            EXPECT_EQ(message.wParam, TRAY_ID_HEALTH);
            posts.push_back(message.lParam);
        }
        return posts;
    }

    std::unique_ptr<CTrayMouseTrack> m_tracker =
        std::make_unique<CTrayMouseTrack>(m_window, kMessage, TRAY_ID_HEALTH);
};

TEST_F(Tracker, OneHoverAndOneLeaveForAStay) {
    // The rectangle's size is the system's, or 5 pixels while that cannot be read.
    simulator::FailNext("SystemParametersInfoA", simulator::kEveryCall, ERROR_INVALID_PARAMETER);
    MoveTo(100, 100);
    MoveTo(104, 103);
    EXPECT_THAT(Posts(), ElementsAre(WM_MOUSEHOVER));
    MoveTo(110, 110);
    EXPECT_THAT(Posts(), IsEmpty()) << "each move takes the rectangle along";
    desktop::MovePointer(114, 106);
    EXPECT_THAT(Posts(), IsEmpty());
    desktop::MovePointer(110, 105);
    EXPECT_THAT(Posts(), ElementsAre(WM_MOUSELEAVE)) << "at exactly the height it has left";
    EXPECT_THAT(Posts(), IsEmpty());
    MoveTo(110, 105);
    EXPECT_THAT(Posts(), ElementsAre(WM_MOUSEHOVER));
}

}  // namespace
