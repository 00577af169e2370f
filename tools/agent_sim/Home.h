// Where the agent lives on this machine: its directory and its settings in the registry, and the
// two files that the applet watches.
#pragma once

#include <filesystem>
#include <string>

namespace agent_sim {

constexpr char kInstallResultsKey[] = R"(SOFTWARE\Corvane Systems\TessaraLink\updates\results)";
constexpr char kDownloadResultsKey[] = R"(SOFTWARE\Corvane Systems\TessaraLink\downloads)";

// Sets up the registry as an installed agent has it, and makes the directory. An empty `applet`
// leaves the registered applet library alone.
void PrepareHome(const std::filesystem::path& directory, bool useTcp,
                 const std::filesystem::path& applet);

// The agent's directory as the registry tells it. Throws std::runtime_error if it does not.
std::filesystem::path AgentDirectory();

std::filesystem::path NotificationPath();
std::filesystem::path SwCachePath();

// The applet passes over a file that was changed in the second in which it began to look, so each
// file is given a time that lies one second ahead.
void StampAhead(const std::filesystem::path& file);

}  // namespace agent_sim
