#include "Daemon.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <stdexcept>

#include "Commands.h"
#include "AgentDirectory.h"
#include "Notification.h"
#include "Plan.h"
#include "Updates.h"
#include "hlxCommand.h"

namespace agent_sim {
namespace {

// A command, and what the user then sees.
struct Step {
    const char* command;
    const char* seen;
};

constexpr std::array<Step, 9> kDemo{{
    {"health low", "a balloon says that health is low; double-click the icon for the applet"},
    {"health medium --message \"Please contact your administrator.\"", "a box with the message"},
    {"health high --page http://localhost/health", "the page, and an icon for high health"},
    {"plan --reassess medium --downloads fail,succeed", "choose 'Reassess health' in the menu"},
    {"offer \"Tessara Link\" 4.2.8-1", "a second icon offers an update; Yes downloads it"},
    {"downloaded \"definitions.cab\" 0x80070002", "a third icon reports a failed download"},
    {"installed \"Tessara Link 4.2.8-1.msi\" 3010", "a fourth icon reports an installation"},
    {"health low --disabled", "the health icon disappears"},
    {"health high", "the health icon appears again"},
}};

// Reads a line without its line end. False at the end of the input.
bool ReadLine(std::string& line) {
    line.clear();
    int c;
    while ((c = std::fgetc(stdin)) != EOF && c != '\n') line += static_cast<char>(c);
    return c != EOF || !line.empty();
}

void Reassess() {
    const auto last = ReadNotification(NotificationPath());
    Notification fresh = last.value_or(Notification{});
    fresh.state = Plan().Reassessed(fresh.state);
    fresh.messagePopup = fresh.urlPopup = false;
    WriteNotification(NotificationPath(), fresh);
    Say(kNotice, "assessed again: health is " + fresh.state);
}

}  // namespace

SocketsInUse::SocketsInUse() {
    WSADATA data{};
    if (WSAStartup(0x0202, &data) != 0)
        throw std::runtime_error("the sockets cannot be initialised");
}

Daemon::Daemon(HostLog& log)
    : log_(log),
      listener_([this](const char* transport, Bytes frame) { OnFrame(transport, frame); }) {
    const std::lock_guard lock(mutex_);
    Say(kNotice, "listening on UDP port 30022 and TCP port 30024");
}

void Daemon::OnFrame(const char* transport, Bytes frame) {
    const std::lock_guard lock(mutex_);
    try {
        const auto lines = DescribeFrame(frame);
        Say(kNotice, std::string(transport) + " " + lines.front());
        for (std::size_t at = 1; at < lines.size(); ++at) Say(kDetail, lines[at]);
        if (const auto command = CommandOf(frame)) Answer(*command);
    } catch (const std::exception& failure) {
        Say(kError, failure.what());
    }
    log_.Rotate();
}

void Daemon::Answer(std::uint32_t command) {
    if (command == HLX_COMMAND_REASSESS) Reassess();
    if (command == HLX_COMMAND_DOWNLOAD) {
        Plan plan;
        PlayDownload(plan.NextDownload(), plan.InstalledPackage());
    }
}

void Daemon::Obey(Arguments arguments) {
    const std::lock_guard lock(mutex_);
    try {
        Understand(std::move(arguments))();
    } catch (const std::exception& failure) {
        Say(kError, failure.what());
    }
    log_.Rotate();
}

void Daemon::ObeyInput() {
    std::string line;
    while (ReadLine(line)) {
        std::vector<std::string> words;
        try {
            words = SplitLine(line);
        } catch (const UsageError& failure) {
            const std::lock_guard lock(mutex_);
            Say(kError, failure.what());
        }
        if (words.empty()) continue;
        if (words.front() == "quit") return;
        if (words.front() == "help") {
            const std::lock_guard lock(mutex_);
            std::fputs(VerbsText().c_str(), stdout);
            std::fflush(stdout);
        } else {
            Obey(Arguments(std::move(words)));
        }
    }
    for (;;) std::this_thread::sleep_for(std::chrono::hours(24));
}

void Daemon::PlayDemo(std::int64_t pace) {
    for (const Step& step : kDemo) {
        Obey(Arguments(SplitLine(step.command)));
        {
            const std::lock_guard lock(mutex_);
            Say(kNotice, std::string("  you see: ") + step.seen);
        }
        std::this_thread::sleep_for(std::chrono::seconds(pace));
    }
}

}  // namespace agent_sim
