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

std::string Attribute(const std::string& name, std::string_view value) {
    return " " + name + "=\"" + Escaped(value) + '"';
}

std::string Element(const std::string& name, const std::string& attributes, std::string_view text) {
    return "  <" + name + attributes + ">" + Escaped(text) + "</" + name + ">\n";
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
    std::string xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    xml += HLX_RESULT_START + Attribute("version", "1.0") + ">\n";
    xml += Element(HLX_AUTO_INSTALL_TAG, {}, YesNo(notification.autoInstall));
    xml += Element(HLX_ENABLED_TAG, {}, YesNo(notification.enabled));
    xml += Element(HLX_HEALTH_STATE_TAG, {}, notification.state);
    xml += Element(HLX_DISPLAY_ICON_TAG, {}, YesNo(notification.displayIcon));
    xml +=
        Element(HLX_MESSAGE_TAG, Attribute(HLX_POPUP_ATTRIBUTE, YesNo(notification.messagePopup)),
                notification.message);
    xml += Element(HLX_BROWSER_TAG,
                   Attribute(HLX_POPUP_ATTRIBUTE, YesNo(notification.urlPopup)) +
                       Attribute(HLX_URL_ATTRIBUTE, notification.url),
                   "");
    for (const std::string& range : notification.restrictions)
        xml += Element(HLX_RESTRICT_TAG, {}, range);
    return xml + HLX_RESULT_END + "\n";
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
