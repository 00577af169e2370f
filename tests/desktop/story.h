// The base of the desktop tests: the applet on the simulated desktop, beside an agent that the test
// simulates.
//
// The clock is manual, so a delay takes no real time and ends exactly when it should. Each test has
// a separate agent's directory, registry and runtime folder, and the agent's real UDP port. At its
// end the user logs off, even if windows are open.
#pragma once

#include "../unit/loopback.h"
#include "controller/MainDlg.h"
#include "hlxInterface.h"
#include "shared/AgentPaths.h"
#include "simulator/clock.h"
#include "simulator/desktop.h"
#include "simulator/fault_run.h"
#include "simulator/faults.h"
#include "simulator/session.h"
#include "updates/UpdateResultStore.h"

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr DWORD kFailed = 0x800C0005;  // the result of a download

// The applet's entry.
int WINAPI WinMain(HINSTANCE instance, HINSTANCE previous, LPSTR commandLine, int show);

// A health document; what is empty is left out.
struct HealthDocument {
    std::string state = "high";
    std::string enabled = "true";
    std::string icon = "yes";
    std::string autoInstall = {};
    std::string message = {};
    std::string url = {};
    std::string more = {};  // elements as they are

    std::string Text() const;
    bool HasIcon() const {
        return icon == "yes" && enabled == "true" &&
               (state == "low" || state == "medium" || state == "high");
    }
};

class Story : public testing::Test {
protected:
    Story();
    ~Story() override;
    void SetUp() override;

    // The applet
    void Start();
    // Starts it on a machine with this result, up to its first health icon or box, and fails if
    // there is none.
    void StartWith(const HealthDocument& document);
    // Lets the file watchers make a pass.
    static void Pass() { desktop::Advance(5s); }
    std::optional<int> ExitCode() const { return m_session->ExitCode(); }
    int End();

    // The agent
    void WriteFile(const std::string& name, const std::string& text) const;
    void Deliver(const HealthDocument& document);
    // Delivers a result and lets the applet see it.
    void Show(const HealthDocument& document);
    void Offer(const std::string& name, const std::string& version) const;
    // How long ago something happened, in ticks of 100 ns; nothing: no time is recorded.
    using Age = std::optional<std::chrono::nanoseconds>;
    // The bytes of a record, and their writing.
    static std::string Record(DWORD result, Age age);
    static void Report(const char* key, const std::string& name, DWORD result, Age age = 0s);
    // A value of the registry, as the agent writes it.
    static void WriteValue(const char* key, const std::string& name, DWORD type,
                           const std::string& data);
    static void WriteText(const char* key, const char* name, const std::string& text);
    // The program itself, which is a file with a version resource.
    static std::string OwnFile();
    // The frames that have come since the last call, in hexadecimal.
    std::vector<std::string> Frames() const;

    const std::filesystem::path m_folder;
    const std::filesystem::path m_agentDirectory;
    std::map<std::string, std::size_t> m_objectsBefore;  // what may be left at the end

private:
    // After a fault: the applet handles further events, or has ended; no object of it is left.
    void RequireThatItGoesOn(const FaultRun& run);
    void NoteIcon(const HealthDocument& document);
    static void RequireNothingLeft(const std::string& kind,
                                   std::map<std::string, std::size_t> objects);

    const Loopback m_agent{SOCK_DGRAM, 30022};
    bool m_failedAtStart = false;
    // In a run with a fault: the health icon was shown before it, and no result has removed it.
    bool m_hasIcon = false;
    std::optional<desktop::Session> m_session;
};

// A story without the applet: a window on the test's own thread receives what is posted to it.
class Receiver : public Story {
protected:
    static constexpr UINT kMessage = WM_APP + 1;

    ~Receiver() override { DestroyWindow(m_window); }
    // What has come since the last call.
    std::vector<MSG> Received() const;

    const HWND m_window = CreateDialogParamA(
        GetModuleHandleA(nullptr), MAKEINTRESOURCEA(IDD_MAINDLG), nullptr,
        [](HWND, UINT, WPARAM, LPARAM) -> INT_PTR { return FALSE; }, 0);
};

// The ids of the icons that stand, in the order in which they were added.
std::vector<UINT> Tray();

// The tooltip of an icon, "" if it does not stand.
std::string Tip(UINT icon);

// The icon, with all fields empty if it is not shown.
desktop::Icon IconOf(UINT icon);

// The front dialog, without anything in it if there is none.
desktop::Dialog Front();
