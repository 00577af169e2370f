// The agent on this machine: its directory, its settings in the registry, and the two files that
// the applet watches.
#pragma once

#include <filesystem>
#include <string>

namespace agent_sim {

// Writes the registry values of an installed agent and creates the directory. An empty `cpl`
// does not change the registered Control Panel applet.
void PrepareAgent(const std::filesystem::path& directory, bool useTcp,
                  const std::filesystem::path& cpl);

// The agent's directory from the registry. Throws std::runtime_error if there is none.
std::filesystem::path AgentDirectory();

std::filesystem::path NotificationPath();
std::filesystem::path SwCachePath();

// Sets the last-write time of the file one second ahead. The applet compares whole seconds with an
// earlier clock reading, and would not notice a change in the second of that reading.
void StampAhead(const std::filesystem::path& file);

}  // namespace agent_sim
