#include "Home.h"

#include <chrono>
#include <stdexcept>

#include "RegistryKey.h"

namespace agent_sim {
namespace {

constexpr char kAppletsKey[] = R"(SOFTWARE\Microsoft\Windows\CurrentVersion\Control Panel\Cpls)";
constexpr char kAppletValue[] = "Tessara Link ";  // the blank belongs to the name

}  // namespace

void PrepareHome(const std::filesystem::path& directory, bool useTcp,
                 const std::filesystem::path& applet) {
    const auto home = std::filesystem::absolute(directory);
    std::filesystem::create_directories(home);
    RegistryKey agent(kAgentKey);
    agent.SetText("", home.string());
    agent.SetNumber("UseTCP", useTcp);
    if (!applet.empty())
        RegistryKey(kAppletsKey).SetText(kAppletValue, std::filesystem::absolute(applet).string());
}

std::filesystem::path AgentDirectory() {
    const auto directory = RegistryKey(kAgentKey).Text("");
    if (!directory || directory->empty())
        throw std::runtime_error(
            "the registry names no agent directory; 'agent_sim prepare' sets one up");
    return *directory;
}

std::filesystem::path NotificationPath() { return AgentDirectory() / "healthnotif.txt"; }

std::filesystem::path SwCachePath() { return AgentDirectory() / "swcache"; }

void StampAhead(const std::filesystem::path& file) {
    std::filesystem::last_write_time(
        file, std::filesystem::file_time_type::clock::now() + std::chrono::seconds(1));
}

}  // namespace agent_sim
