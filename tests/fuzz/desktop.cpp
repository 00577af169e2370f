// Feeds the applet on its desktop a script, line by line: commands of the terminal and, after '@',
// messages that another program can post, within their contracts. The applet goes on or ends, and
// leaves no icon.
#include <windows.h>

#include <cstdio>
#include <filesystem>
#include <sstream>

#include "AgentDirectory.h"
#include "Commands.h"
#include "Notification.h"
#include "controller/MainDlg.h"
#include "controller/RegisteredMessages.h"
#include "harness.h"
#include "hlxInterface.h"
#include "simulator/clock.h"
#include "simulator/session.h"
#include "terminal/commands.h"

using namespace agent_sim;
using namespace std::chrono_literals;

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int);

namespace {

void Deliver(const std::string& text) {
    Notification notification{
        .state = text.size() % 2 ? "low" : "high", .message = text, .url = text};
    notification.messagePopup = notification.urlPopup = text.size() % 4 > 1;
    WriteNotification(NotificationPath(), notification);
    desktop::Advance(5s);
}

void SetUp() {
    simulator::Clock::SetManual(simulator::Clock::Now());
    setenv("WIN32_REGISTRY", (ScratchPath() + "/registry").c_str(), 1);
    setenv("XDG_RUNTIME_DIR", ScratchPath().c_str(), 1);
    PrepareAgent(ScratchPath() + "/agent", false, "");
    for (const char* command : {"offer a 5.0.0.0", "downloaded a 0x80070002", "installed a 3010"})
        Understand(Arguments(SplitLine(command)))();
}

// A letter for the message, a byte for wParam, and the text or number of lParam.
void Step(const std::string& step) {
    if (step.size() < 2) return;
    const char kind = step[0];
    const auto number = static_cast<unsigned char>(step[1]);
    const std::string rest = step.substr(2);
    const auto send = [](UINT message, auto wParam, auto lParam) {
        return bool(desktop::Post(message, (WPARAM)wParam, (LPARAM)lParam));
    };
    // The applet releases the buffer.
    const auto sendText = [&](CRegisteredMessage& message) {
        char* const buffer = strcpy(new char[rest.size() + 1], rest.c_str());
        if (!send(message.Number(), number, buffer)) delete[] buffer;
    };
    if (kind == 'd') Deliver(rest);
    if (kind == 'n') send(WM_TRAYNOTIFY, 10052 + number % 6, 512 + std::ssize(rest));
    if (kind == 'h') sendText(g_msgHealthResults);
    if (kind == 'u') sendText(g_msgSWUpdates);
    if (kind == 'i')
        send(g_msgQueuedInstalls.Number(), HKEY_LOCAL_MACHINE, HLX_INSTALL_RESULTS_KEY);
    if (kind == 'f')
        send(g_msgDownloadResults.Number(), HKEY_LOCAL_MACHINE, HLX_DOWNLOAD_RESULTS_KEY);
    if (kind == 'z') send(number % 2 ? WM_TIMER : WM_USER + number, number, 0);
}

}  // namespace

void Fuzz(Bytes input) {
    static const bool isQuiet = freopen("/dev/null", "w", stdout) != nullptr;
    SetUp();
    desktop::Session session([] { return WinMain(nullptr, nullptr, nullptr, SW_SHOWNORMAL); });
    Deliver("Low");
    terminal::Screen screen(!isQuiet);
    std::istringstream script(Text(input));
    for (std::string line; !screen.HasEnded() && std::getline(script, line); screen.Refresh()) {
        if (line.starts_with('@'))
            Step(line.substr(1));
        else if (line.find('!') == line.npos && line.find("wait") == line.npos)  // shell, real time
            if (terminal::DoLine(line, screen).quits) break;
    }
    session.End();
    Require(desktop::Icons().empty());
    std::filesystem::remove_all(ScratchPath());
}
