// The health notification file: what the daemon tells the applet about the machine's health.
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
    std::string message;  // UTF-8, as all texts here
    bool messagePopup = false;
    std::string url;
    bool urlPopup = false;
    std::vector<std::string> restrictions;  // "FIRST-LAST", dotted addresses

    bool operator==(const Notification&) const = default;
};

// Throws UsageError unless it is one of the four.
void CheckState(const std::string& state);

std::string ToXml(const Notification& notification);

// Replaces the file at once, so that no reader sees half of it. Throws
// std::filesystem::filesystem_error or std::runtime_error if that fails.
void WriteNotification(const std::filesystem::path& file, const Notification& notification);

// Reads a file back; nothing if it is missing or no health result.
std::optional<Notification> ReadNotification(const std::filesystem::path& file);

}  // namespace agent_sim
