// The health notification file, which the daemon writes and the applet reads.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace agent_sim {

struct Notification {
    std::string state = "unknown";  // "unknown", "low", "medium" or "high"
    bool enabled = true;
    bool displayIcon = true;
    bool autoInstall = false;
    std::string message{};  // UTF-8, as all texts here
    bool messagePopup = false;
    std::string url{};
    bool urlPopup = false;
    std::vector<std::string> restrictions{};  // "FIRST-LAST", dotted addresses

    bool operator==(const Notification&) const = default;
};

// Throws UsageError unless `state` is one of the four.
void CheckState(const std::string& state);

std::string ToXml(const Notification& notification);

// Replaces the file atomically. Throws std::filesystem::filesystem_error or std::runtime_error if
// that fails.
void WriteNotification(const std::filesystem::path& file, const Notification& notification);

// Reads the file; nothing if it is missing or not a health document.
std::optional<Notification> ReadNotification(const std::filesystem::path& file);

}  // namespace agent_sim
