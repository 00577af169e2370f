#include "Agent.h"

#include "AgentDirectory.h"
#include "Screen.h"
#include "hlxInterface.h"

namespace {

void Unregister() {
    RegDeleteTreeA(HKEY_LOCAL_MACHINE, HLX_AGENT_KEY);
    RegDeleteKeyValueA(HKEY_LOCAL_MACHINE, HLX_CPLS_KEY, HLX_CPLS_VALUE);
}

}  // namespace

Agent::Agent(bool useTcp)
    : directory_(std::filesystem::temp_directory_path() / "vh_tray e2e"),
      listener_([this](const std::string& transport, agent_sim::Bytes frame) {
          const std::lock_guard lock(mutex_);
          frames_ += transport + " " + std::to_string(agent_sim::CommandOf(frame).value()) + " ";
      }) {
    Unregister();
    agent_sim::PrepareAgent(directory_, useTcp, ProgramFolder() + "sample_cpl.cpl");
}

Agent::~Agent() {
    Unregister();
    std::error_code ignored;
    std::filesystem::remove_all(directory_, ignored);
}

void Agent::Report(agent_sim::Notification notification) const {
    notification.messagePopup = !notification.message.empty();
    notification.urlPopup = !notification.url.empty();
    agent_sim::WriteNotification(agent_sim::NotificationPath(), notification);
}

std::string Agent::Receive() {
    std::string received;
    const auto hasCome = [&] {
        const std::lock_guard lock(mutex_);
        received = std::exchange(frames_, {});
        return !received.empty();
    };
    WaitFor(hasCome, kPromptLimitMs);
    return received;
}
