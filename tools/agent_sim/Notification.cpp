#include "Notification.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string_view>
#include <thread>

#include "AgentDirectory.h"
#include "Arguments.h"
#include "ExpatImpl.h"
#include "hlxHealthReport.h"
#include "hlxInterface.h"

namespace agent_sim {
namespace {

// Indexed by HlxHealthState.
constexpr std::array<std::string_view, 4> kStates = {"unknown", "low", "medium", "high"};

std::string Escaped(std::string_view text) {
    std::string escaped;
    for (const char c : text) {
        switch (c) {
            case '&':
                escaped += "&amp;";
                break;
            case '<':
                escaped += "&lt;";
                break;
            case '>':
                escaped += "&gt;";
                break;
            case '"':
                escaped += "&quot;";
                break;
            default:
                escaped += c;
        }
    }
    return escaped;
}

const char* YesNo(bool flag) { return flag ? "yes" : "no"; }

std::string DottedAddress(std::uint32_t networkOrder) {
    std::array<std::uint8_t, 4> bytes;
    std::memcpy(bytes.data(), &networkOrder, bytes.size());
    std::string dotted = std::to_string(bytes[0]);
    for (std::size_t at = 1; at < bytes.size(); ++at) dotted += '.' + std::to_string(bytes[at]);
    return dotted;
}

// On Windows the file cannot be replaced while a reader has it open.
void Replace(const std::filesystem::path& fresh, const std::filesystem::path& file) {
    constexpr int kAttempts = 50;
    for (int attempt = 1;; ++attempt) {
        std::error_code error;
        std::filesystem::rename(fresh, file, error);
        if (!error) return;
        if (attempt == kAttempts)
            throw std::filesystem::filesystem_error("cannot replace", file, error);
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
}

}  // namespace

void CheckState(const std::string& state) {
    if (std::find(kStates.begin(), kStates.end(), state) == kStates.end())
        throw UsageError("'" + state + "' is not a health state");
}

std::string ToXml(const Notification& notification) {
    const auto element = [](const char* name, const std::string& text) {
        return std::string("  <") + name + ">" + Escaped(text) + "</" + name + ">\n";
    };
    std::string xml =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<HLXHealthResult version=\"1.0\">\n";
    xml += element("AutoInstall", YesNo(notification.autoInstall));
    xml += element("Enabled", YesNo(notification.enabled));
    xml += element("HealthState", notification.state);
    xml += element("DisplayHealthIcon", YesNo(notification.displayIcon));
    xml += std::string("  <Message popup=\"") + YesNo(notification.messagePopup) + "\">" +
           Escaped(notification.message) + "</Message>\n";
    xml += std::string("  <Browser popup=\"") + YesNo(notification.urlPopup) + "\" url=\"" +
           Escaped(notification.url) + "\"/>\n";
    for (const std::string& range : notification.restrictions) xml += element("RestrictIP", range);
    return xml + "</HLXHealthResult>\n";
}

void WriteNotification(const std::filesystem::path& file, const Notification& notification) {
    auto fresh = file;
    fresh += ".new";
    std::ofstream stream(fresh, std::ios::binary);
    stream << ToXml(notification);
    stream.close();
    if (!stream) throw std::runtime_error("cannot write " + fresh.string());
    StampAhead(fresh);
    Replace(fresh, file);
}

std::optional<Notification> ReadNotification(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream) return std::nullopt;
    const std::string text((std::istreambuf_iterator<char>(stream)), {});

    const CHlxExpatWrapper parserLibrary;
    HealthReport report;
    if (report.Read(text.c_str()) != HLX_DONE) return std::nullopt;
    Notification notification{.state = std::string(kStates.at(report.state)),
                              .enabled = report.enabled != 0,
                              .displayIcon = report.displayIcon != 0,
                              .autoInstall = report.autoInstall != 0,
                              .message = report.message ? report.message : "",
                              .messagePopup = report.messagePopup != 0,
                              .url = report.url ? report.url : "",
                              .urlPopup = report.urlPopup != 0,
                              .restrictions = {}};
    const std::uint32_t* const addresses = report.restrictAddresses;
    for (std::uint32_t slot = 0; addresses && slot < report.restrictCount; slot += 2)
        notification.restrictions.push_back(DottedAddress(addresses[slot]) + "-" +
                                            DottedAddress(addresses[slot + 1]));
    return notification;
}

}  // namespace agent_sim
