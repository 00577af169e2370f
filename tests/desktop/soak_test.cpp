// Random events of a user and an agent, sometimes with a failing call, compared with a model of the
// applet. After each event the desktop must match the model; after the end of an instance, the
// process must hold the same objects as before. SOAK="<events> <seed>" sets length and seed.
#include <malloc.h>

#include <random>

#include "story.h"

namespace {

constexpr int kEventsOfAnInstance = 100;
constexpr std::size_t kMostCalls = 6;
const char* const kStates[] = {"unknown", "low", "medium", "high"};

// A modal call of the applet. It returns when the user has answered it and every later one has
// returned.
struct ModalCall {
    std::string kind;
    std::function<void()> onYes, onReturn;
    HWND window = nullptr;
    bool isAnswered = false;
};

// The state and the desktop of one instance of the applet.
struct Instance {
    std::vector<ModalCall> calls = {};
    std::size_t health = 0;
    std::set<UINT> icons = {}, sheets = {};
    bool reassessIsPending = false, boxIsOpen = false, autoInstall = false, haveResult = false;
};

std::size_t Entries(const char* folder) {
    using Iterator = std::filesystem::directory_iterator;
    return static_cast<std::size_t>(std::distance(Iterator(folder), Iterator()));
}

class Soak : public Story {
protected:
    Soak() { WriteText(HLX_CPLS_KEY, HLX_CPLS_VALUE, SAMPLE_CPL); }

    std::size_t Random(std::size_t below) { return m_random() % below; }

    // ---- The model

    // Whether the call is the one that fails in this event.
    bool Fails(const char* call) { return m_failing == call && (m_failing.clear(), true); }

    void Announce(UINT icon) {
        if (!Fails("Shell_NotifyIconA")) m_balloons += m_now.icons.insert(icon).second;
    }
    void OnOffer() {
        if (m_offerIsNewer && !m_now.autoInstall && m_now.haveResult) Announce(TRAY_ID_UPDATES);
    }
    void OnReport(UINT icon) {
        const auto isNews = [=](const auto& report) {
            const auto [time, result] = report.second;
            return simulator::Clock::Now() - time <= 600 * simulator::kTicksPerSecond &&
                   (icon == TRAY_ID_INSTALLED || result == kFailed);
        };
        if (!Fails("RegOpenKeyExA") && std::ranges::any_of(m_reports[icon], isNews)) Announce(icon);
    }
    void OnResult(const HealthDocument& result) {
        m_now.reassessIsPending = false;
        if (result.enabled == "<") return;  // no document
        m_now.autoInstall = !result.autoInstall.empty();
        const bool isFirst = !std::exchange(m_now.haveResult, true);
        React(result);
        if (isFirst) OnOffer();
    }
    void React(const HealthDocument& result) {
        const bool isOn = result.enabled == "true" && result.icon == "yes";
        const auto named = std::ranges::find(kStates, result.state) - kStates;
        const std::size_t state = isOn ? static_cast<std::size_t>(named) : 0;
        if (isOn && state == m_now.health) return;
        const auto rest = [=, this] {
            if (isOn && !result.url.empty() && !Fails("ShellExecuteA"))
                m_pages.push_back(result.url);
            if (Fails("Shell_NotifyIconA")) return;
            m_now.health = state;
            m_balloons += state != 0;
        };
        if (!isOn || result.message.empty() || m_now.boxIsOpen || Fails("MessageBoxA"))
            return rest();
        m_now.boxIsOpen = true;
        Open(
            "box", [] {}, [=, this] { m_now.boxIsOpen = false, rest(); });
    }
    void OnCommand(UINT command) {
        if (command != ID_REASSESS && m_now.sheets.insert(command).second)
            Open(
                "sheet", [] {}, [=, this] { m_now.sheets.erase(command); });
        else if (command == ID_REASSESS && !m_now.reassessIsPending && !Fails("sendto"))
            m_now.reassessIsPending = ++m_frames;
    }
    void OnDoubleClick(UINT icon) {
        if (icon == TRAY_ID_HEALTH) return OnCommand(ID_DISPLAY_HEALTH);
        const auto leave = [=, this] { m_now.icons.erase(icon); };
        if (Fails("DialogBoxParamA")) return leave();
        const bool asks = m_reports[icon][OwnFile()].second == ERROR_SUCCESS_REBOOT_REQUIRED;
        const auto accept = [=, this] {
            icon == TRAY_ID_INSTALLED ? m_reboots += asks : ++m_frames;
        };
        Open("dialog", accept, leave);
    }

    // The call's window is the one that no other call has.
    void Open(const char* kind, std::function<void()> onYes, std::function<void()> onReturn) {
        m_now.calls.push_back({kind, std::move(onYes), std::move(onReturn)});
        const auto claim = [&calls = m_now.calls](const auto& each) {
            if (std::ranges::find(calls, each.window, &ModalCall::window) == calls.end())
                calls.back().window = each.window;
        };
        std::ranges::for_each(desktop::Boxes(), claim);
        std::ranges::for_each(desktop::Dialogs(), claim);
    }
    // A command of the menu is a message, which is served when the answered calls have returned.
    void Return() {
        while (!m_now.calls.empty() && m_now.calls.back().isAnswered) {
            const ModalCall call = m_now.calls.back();
            m_now.calls.pop_back();
            call.onReturn();
        }
        if (const UINT command = std::exchange(m_command, 0)) OnCommand(command);
    }
    // Any click elsewhere closes the menu.
    void LeaveMenu() {
        for (ModalCall& call : m_now.calls) call.isAnswered |= call.kind == "menu";
        Return();
    }
    std::size_t Waiting(const char* kind) const {
        return static_cast<std::size_t>(std::ranges::count_if(
            m_now.calls, [=](const auto& call) { return call.kind == kind && !call.isAnswered; }));
    }

    // ---- The events

    void MayFail(std::initializer_list<const char*> calls) {
        if (Random(2)) return;
        m_failing = calls.begin()[Random(calls.size())];
        simulator::FailNext(m_failing, 1, ERROR_ACCESS_DENIED);
    }
    void Result() {
        m_lastResult = {.state = kStates[Random(4)]};
        if (Random(4) == 0) m_lastResult.message = "message";
        if (Random(3) == 0) m_lastResult.url = "http://" + m_lastResult.state;
        if (Random(4) == 0) m_lastResult.autoInstall = "true";
        if (Random(8) == 0) m_lastResult.enabled = std::array{"", "no", "<"}[Random(3)];
        if (Random(8) == 0) m_lastResult.icon = std::array{"", "off"}[Random(2)];
        MayFail({"Shell_NotifyIconA", "MessageBoxA", "ShellExecuteA"});
        Show(m_lastResult);
        OnResult(m_lastResult);
    }
    void NewOffer() {
        m_offerIsNewer = Random(2);
        MayFail({"Shell_NotifyIconA"});
        Offer("Agent", m_offerIsNewer ? "4.2.8-1" : "4.2.7-1");
        Pass();
        OnOffer();
    }
    void NewReport() {
        const bool installed = Random(2);
        const UINT icon = installed ? TRAY_ID_INSTALLED : TRAY_ID_DOWNLOADS;
        const std::string name = installed ? OwnFile() : std::to_string(Random(5));
        const DWORD result = Random(2) ? 0 : installed ? ERROR_SUCCESS_REBOOT_REQUIRED : kFailed;
        const std::chrono::seconds age(Random(1200));
        MayFail({"Shell_NotifyIconA", "RegOpenKeyExA"});
        m_reports[icon][name] = {simulator::Clock::Now() - age / 100ns, result};
        Report(installed ? HLX_INSTALL_RESULTS_KEY : HLX_DOWNLOAD_RESULTS_KEY, name, result, age);
        OnReport(icon);
    }
    void DoubleClick() {
        const auto icons = Tray();
        if (icons.empty()) return;
        const UINT icon = icons[Random(icons.size())];
        if (icon != TRAY_ID_HEALTH) MayFail({"DialogBoxParamA"});
        EXPECT_TRUE(desktop::DoubleClick(icon));
        LeaveMenu();
        OnDoubleClick(icon);
    }
    // A menu that was closed while a later call is open blocks other menus until it returns.
    void OpenMenu() {
        if (!m_now.health) return;
        MayFail({"TrackPopupMenu"});
        EXPECT_TRUE(desktop::RightClick(TRAY_ID_HEALTH));
        LeaveMenu();
        const bool isBusy = std::ranges::count(m_now.calls, "menu", &ModalCall::kind) > 0;
        if (!Fails("TrackPopupMenu") && !isBusy)
            Open(
                "menu", [] {}, [] {});
    }
    void Answer() {
        const std::size_t index = Random(m_now.calls.size() + 1);
        if (index == m_now.calls.size() || m_now.calls[index].isAnswered) return;
        if (m_now.calls[index].kind != "menu") LeaveMenu();
        ModalCall& call = m_now.calls[index];
        const bool yes = Random(2);
        if (call.kind == "menu") {
            const UINT command = std::array{ID_REASSESS, ID_ABOUT, ID_DISPLAY_HEALTH}[Random(3)];
            if (yes) call.onReturn = [=, this] { m_command = command; };
            EXPECT_TRUE(yes ? desktop::Choose(command) : desktop::DismissMenu());
        } else if (yes && call.kind == "dialog") {
            call.onYes();
            EXPECT_TRUE(desktop::Press(IDYES, call.window));
        } else if (!desktop::Press(IDNO, call.window)) {
            EXPECT_TRUE(desktop::CloseWindow(call.window));
        }
        call.isAnswered = true;
        Return();
    }
    void Reassess() {
        MayFail({"sendto"});
        desktop::PostCommand(ID_REASSESS);
        OnCommand(ID_REASSESS);
    }
    void Wait() { desktop::Advance(5s * Random(60)); }

    void Compare() {
        std::set<UINT> icons = m_now.icons;
        if (m_now.health) icons.insert(TRAY_ID_HEALTH);
        EXPECT_THAT(Tray(), testing::UnorderedElementsAreArray(icons));
        EXPECT_THAT(Tip(TRAY_ID_HEALTH),
                    testing::EndsWith(m_now.health ? kStates[m_now.health] : ""));
        EXPECT_EQ(desktop::Boxes().size(), Waiting("box"));
        EXPECT_EQ(desktop::Dialogs().size(), Waiting("dialog") + Waiting("sheet"));
        EXPECT_EQ(desktop::OpenMenu().has_value(), Waiting("menu") == 1);
        EXPECT_EQ(desktop::Pages(), std::exchange(m_pages, {}));
        EXPECT_EQ(desktop::Reboots().size(), std::exchange(m_reboots, 0));
        EXPECT_EQ(Frames().size(), std::exchange(m_frames, 0));
        EXPECT_EQ(std::ranges::count(desktop::Journal(), desktop::EventKind::kBalloon,
                                     &desktop::Event::kind),
                  std::exchange(m_balloons, 0));
        EXPECT_EQ(simulator::ClearFaults(), std::exchange(m_failing, ""));
        desktop::Forget();
    }
    // From the start of an instance to its end.
    void RunInstance() {
        // The applet reads the records within 10 ms: none reaches the limit of 600 s in that time.
        const auto reachesLimit = [](const auto& report) {
            const auto age = simulator::Clock::Now() - report.second.first;
            return age / simulator::kTicksPerSecond == 599 ||
                   age == 600 * simulator::kTicksPerSecond;
        };
        if (std::ranges::any_of(m_reports[TRAY_ID_INSTALLED], reachesLimit)) desktop::Advance(2s);
        OnReport(TRAY_ID_INSTALLED);
        Deliver(m_lastResult);
        Start();
        Pass();
        OnResult(m_lastResult);
        Compare();
        void (Soak::*const events[])() = {
            &Soak::Result,   &Soak::Result, &Soak::Result,      &Soak::NewOffer, &Soak::NewReport,
            &Soak::OpenMenu, &Soak::Answer, &Soak::DoubleClick, &Soak::Reassess, &Soak::Wait,
            &Soak::Answer,   &Soak::Answer, &Soak::Answer};
        for (int i = 0; i < kEventsOfAnInstance && !HasFailure(); ++i) {
            SCOPED_TRACE(i);
            const bool isFull = m_now.calls.size() >= kMostCalls;
            (this->*(isFull ? &Soak::Answer : events[Random(std::size(events))]))();
            Compare();
        }
        const int command = std::array{IDOK, IDCANCEL, ID_EXIT}[Random(3)];
        if (Random(2)) desktop::PostCommand(static_cast<UINT>(command));
        EXPECT_THAT(End(), testing::AnyOf(command, IDCANCEL));  // that of a log-off
        m_now = {};
        Compare();
    }

    std::mt19937 m_random;
    Instance m_now;
    HealthDocument m_lastResult;
    bool m_offerIsNewer = false;
    std::map<UINT, std::map<std::string, std::pair<simulator::Ticks, DWORD>>> m_reports;
    UINT m_command = 0;
    // Of this event
    std::string m_failing;
    std::vector<std::string> m_pages;
    std::size_t m_reboots = 0, m_frames = 0;
    std::ptrdiff_t m_balloons = 0;
};

TEST_F(Soak, TheDesktopMatchesTheModel) {
    const char* const wanted = std::getenv("SOAK");
    unsigned events = 600, seed = 1;
    std::istringstream(wanted ? wanted : "") >> events >> seed;
    m_random.seed(seed);
    const std::size_t threads = Entries("/proc/self/task");
    std::size_t files = 0, memory = 0;
    for (unsigned done = 0; done < events && !HasFailure(); done += kEventsOfAnInstance) {
        SCOPED_TRACE(done);
        RunInstance();
        while (Entries("/proc/self/task") > threads) std::this_thread::yield();
        if (done == 2 * kEventsOfAnInstance) {
            files = Entries("/proc/self/fd");
            memory = mallinfo2().uordblks;
        }
    }
    EXPECT_EQ(Entries("/proc/self/fd"), files);
    EXPECT_LT(mallinfo2().uordblks, memory + 64 * 1024);
}

}  // namespace
