// agent_sim simulates the agent daemon. Commands.cpp has its commands.
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "Arguments.h"
#include "Commands.h"
#include "Daemon.h"
#include "HostLog.h"

namespace agent_sim {
namespace {

constexpr int kDone = 0;
constexpr int kFailed = 1;
constexpr int kNotUnderstood = 2;

constexpr std::int64_t kDemoPace = 12;  // seconds; a change is seen within 5

// The complete command line is parsed before anything is changed or a log file is opened.
void Run(Arguments arguments) {
    const LogSettings settings = TakeLogSettings(arguments);
    const bool listens = arguments.NextIs("listen");
    const bool demo = arguments.NextIs("demo");
    if (!listens && !demo) {
        const Action action = Understand(std::move(arguments));
        const HostLog log(settings);
        return action();
    }
    arguments.TakeWord();
    const auto pace = arguments.TakeNumber("--pace", {0, 3600}).value_or(kDemoPace);
    arguments.ExpectNoMore();
    HostLog log(settings);
    Daemon daemon(log);
    if (demo)
        daemon.PlayDemo(pace);
    else
        daemon.ObeyInput();
}

int Main(std::vector<std::string> words) {
    try {
        Arguments arguments(std::move(words));
        if (arguments.TakeFlag("--help") || arguments.NextIs("help")) {
            std::fputs(HelpText().c_str(), stdout);
            return kDone;
        }
        Run(std::move(arguments));
        return kDone;
    } catch (const UsageError& error) {
        std::fprintf(stderr, "agent_sim: %s; see agent_sim --help\n", error.what());
        return kNotUnderstood;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "agent_sim: %s\n", error.what());
        return kFailed;
    }
}

}  // namespace
}  // namespace agent_sim

int main(int count, char** words) { return agent_sim::Main({words + 1, words + count}); }
