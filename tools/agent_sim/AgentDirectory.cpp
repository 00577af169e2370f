#include "AgentDirectory.h"

#include <algorithm>
#include <chrono>
#include <stdexcept>

#include "RegistryKey.h"
#include "hlxAgentKey.h"
#include "hlxInterface.h"

namespace agent_sim {
void PrepareAgent(const std::filesystem::path& directory, bool useTcp,
                  const std::filesystem::path& cpl) {
    const auto path = std::filesystem::absolute(directory);
    std::filesystem::create_directories(path);
    RegistryKey agent(HLX_AGENT_KEY, RegistryKey::For::kWriting);
    agent.SetText("", path.string());
    agent.SetNumber("UseTCP", useTcp);
    if (!cpl.empty())
        RegistryKey(HLX_CPLS_KEY, RegistryKey::For::kWriting)
            .SetText(HLX_CPLS_VALUE, std::filesystem::absolute(cpl).string());
}

std::filesystem::path AgentDirectory() {
    std::string directory = hlx_agentFile("");
    if (directory.empty())
        throw std::runtime_error(
            "the registry has no agent directory; 'agent_sim prepare' creates one");
    // The library ends it with a backslash, which is a separator in the Win32 API only.
    std::replace(directory.begin(), directory.end(), '\\', '/');
    return std::filesystem::path(directory).parent_path().make_preferred();
}

std::filesystem::path NotificationPath() { return AgentDirectory() / HLX_HEALTH_FILE; }

std::filesystem::path SwCachePath() { return AgentDirectory() / HLX_SWCACHE_FILE; }

void StampAhead(const std::filesystem::path& file) {
    std::filesystem::last_write_time(
        file, std::filesystem::file_time_type::clock::now() + std::chrono::seconds(1));
}

}  // namespace agent_sim
