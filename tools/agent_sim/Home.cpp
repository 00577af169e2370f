#include "Home.h"

#include <algorithm>
#include <chrono>
#include <stdexcept>

#include "RegistryKey.h"
#include "hlxAgentKey.h"

namespace agent_sim {
namespace {

constexpr char kAppletsKey[] = R"(SOFTWARE\Microsoft\Windows\CurrentVersion\Control Panel\Cpls)";
constexpr char kAppletValue[] = "Tessara Link ";  // the blank belongs to the name

}  // namespace

void PrepareHome(const std::filesystem::path& directory, bool useTcp,
                 const std::filesystem::path& applet) {
    const auto home = std::filesystem::absolute(directory);
    std::filesystem::create_directories(home);
    RegistryKey agent(kHlxAgentKey, RegistryKey::For::kWriting);
    agent.SetText("", home.string());
    agent.SetNumber("UseTCP", useTcp);
    if (!applet.empty())
        RegistryKey(kAppletsKey, RegistryKey::For::kWriting)
            .SetText(kAppletValue, std::filesystem::absolute(applet).string());
}

std::filesystem::path AgentDirectory() {
    std::string directory = hlx_agentFile("");
    if (directory.empty())
        throw std::runtime_error(
            "the registry names no agent directory; 'agent_sim prepare' sets one up");
    // The library ends it with a backslash, which is a separator to the Win32 API alone.
    std::replace(directory.begin(), directory.end(), '\\', '/');
    return std::filesystem::path(directory).parent_path().make_preferred();
}

std::filesystem::path NotificationPath() { return AgentDirectory() / "healthnotif.txt"; }

std::filesystem::path SwCachePath() { return AgentDirectory() / "swcache"; }

void StampAhead(const std::filesystem::path& file) {
    std::filesystem::last_write_time(
        file, std::filesystem::file_time_type::clock::now() + std::chrono::seconds(1));
}

}  // namespace agent_sim
