#include "FrameText.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <string_view>

#include "hlxBigEndian.h"
#include "hlxCommand.h"
#include "hlxComposite.h"

namespace agent_sim {
namespace {

constexpr std::size_t kHeaderSize = HLX_FRAME_HEADER_SIZE;
constexpr std::size_t kBytesPerLine = 16;
constexpr std::size_t kMostBytesShown = 1024;

struct CommandName {
    std::uint32_t number;
    std::string_view name;
    std::uint32_t length;  // of the payload; 0: any
};

constexpr std::array<CommandName, 11> kCommands{
    {{HLX_COMMAND_2, "command without data", HLX_BARE_PAYLOAD_SIZE},
     {HLX_COMMAND_COMPOSITE, "composite message", 0},
     {HLX_COMMAND_REASSESS, "reassess health", HLX_BARE_PAYLOAD_SIZE},
     {HLX_COMMAND_5, "command without data", HLX_BARE_PAYLOAD_SIZE},
     {HLX_COMMAND_6, "command without data", HLX_BARE_PAYLOAD_SIZE},
     {HLX_COMMAND_DOWNLOAD, "download updates", HLX_BARE_PAYLOAD_SIZE},
     {HLX_COMMAND_RECORD_8, "record", HLX_RECORD_8_SIZE},
     {HLX_COMMAND_RECORD_9, "record", HLX_RECORD_9_SIZE},
     {HLX_COMMAND_TEXT, "text", 0},
     {HLX_COMMAND_12, "command without data", HLX_BARE_PAYLOAD_SIZE},
     {HLX_COMMAND_13, "command without data", HLX_BARE_PAYLOAD_SIZE}}};

const CommandName* FindCommand(std::uint32_t number) {
    const auto found =
        std::find_if(kCommands.begin(), kCommands.end(),
                     [=](const CommandName& known) { return known.number == number; });
    return found == kCommands.end() ? nullptr : &*found;
}

std::string InHex(Bytes bytes) {
    std::string hex;
    for (const std::uint8_t byte : bytes) {
        char pair[4];
        std::snprintf(pair, sizeof pair, "%02x ", byte);
        hex += pair;
    }
    if (!hex.empty()) hex.pop_back();
    return hex;
}

std::string Printable(Bytes bytes) {
    std::string text;
    for (const std::uint8_t byte : bytes)
        text += byte >= 0x20 && byte < 0x7f ? static_cast<char>(byte) : '.';
    return text;
}

std::string Count(std::size_t bytes) {
    return std::to_string(bytes) + (bytes == 1 ? " byte" : " bytes");
}

void DescribeBlob(std::vector<std::string>& lines, std::size_t number, Bytes blob) {
    constexpr std::size_t kShown = 48;
    const Bytes shown = blob.first(std::min(blob.size(), kShown));
    lines.push_back("  blob " + std::to_string(number) + ", " + Count(blob.size()) + ": \"" +
                    Printable(shown) + (shown.size() < blob.size() ? "\"..." : "\""));
}

void DescribeComposite(std::vector<std::string>& lines, Bytes payload) {
    std::array<std::uint32_t, 3> lengths{};
    std::array<const std::uint8_t*, 3> blobs{};
    if (hlx_parseCompositeChecked(payload.data(), static_cast<std::uint32_t>(payload.size()),
                                  &lengths[0], &blobs[0], &lengths[1], &blobs[1], &lengths[2],
                                  &blobs[2]) != HLX_DONE) {
        lines.push_back("  a composite message whose lengths do not fit its size");
        return;
    }
    for (std::size_t at = 0; at < blobs.size(); ++at)
        if (blobs[at]) DescribeBlob(lines, at + 1, {blobs[at], lengths[at]});
}

void DescribeText(std::vector<std::string>& lines, Bytes payload) {
    const bool ended = !payload.empty() && payload.back() == 0;
    const Bytes text = ended ? payload.first(payload.size() - 1) : payload;
    lines.push_back("  \"" + Printable(text) + (ended ? "\"" : "\", without its terminating NUL"));
}

void DescribePayload(std::vector<std::string>& lines, std::uint32_t number, Bytes payload) {
    if (number == HLX_COMMAND_COMPOSITE) DescribeComposite(lines, payload);
    if (number == HLX_COMMAND_TEXT) DescribeText(lines, payload);
}

void DumpBytes(std::vector<std::string>& lines, Bytes bytes) {
    const Bytes shown = bytes.first(std::min(bytes.size(), kMostBytesShown));
    for (std::size_t at = 0; at < shown.size(); at += kBytesPerLine)
        lines.push_back("  " +
                        InHex(shown.subspan(at, std::min(kBytesPerLine, shown.size() - at))));
    if (shown.size() < bytes.size())
        lines.push_back("  and " + Count(bytes.size() - shown.size()) + " more");
}

// A frame of at least the length of a header.
struct Frame {
    explicit Frame(Bytes frame)
        : number(hlx_loadBig32(frame.data())),
          announced(hlx_loadBig32(frame.data() + 4)),
          payload(frame.subspan(kHeaderSize)),
          known(FindCommand(number)) {}

    // The error in its lengths; empty if there is none.
    std::string Fault() const {
        if (announced > kLongestPayload)
            return "the header announces " + Count(announced) + ", more than are accepted";
        if (announced != payload.size()) return "the header announces " + Count(announced);
        if (known && known->length && known->length != announced)
            return "the command has " + Count(known->length);
        return {};
    }

    std::uint32_t number;
    std::uint32_t announced;
    Bytes payload;
    const CommandName* known;
};

}  // namespace

std::optional<std::uint32_t> CommandOf(Bytes bytes) {
    if (bytes.size() < kHeaderSize) return std::nullopt;
    const Frame frame(bytes);
    if (!frame.Fault().empty()) return std::nullopt;
    return frame.number;
}

std::vector<std::string> DescribeFrame(Bytes bytes) {
    std::vector<std::string> lines;
    if (bytes.size() < kHeaderSize) {
        lines.push_back("not a frame: " + Count(bytes.size()) + ", shorter than a header");
    } else {
        const Frame frame(bytes);
        lines.push_back("command " + std::to_string(frame.number) + ", " +
                        std::string(frame.known ? frame.known->name : "unknown") + ", " +
                        Count(frame.payload.size()));
        if (const std::string fault = frame.Fault(); !fault.empty())
            lines.push_back("  " + fault);
        else
            DescribePayload(lines, frame.number, frame.payload);
    }
    DumpBytes(lines, bytes);
    return lines;
}

void FrameSplitter::Append(Bytes bytes) { rest_.insert(rest_.end(), bytes.begin(), bytes.end()); }

std::uint32_t FrameSplitter::Announced() const {
    return rest_.size() < kHeaderSize ? 0 : hlx_loadBig32(rest_.data() + 4);
}

std::optional<std::vector<std::uint8_t>> FrameSplitter::Next() {
    const std::size_t length = Announced();
    if (rest_.size() < kHeaderSize || rest_.size() - kHeaderSize < length) return std::nullopt;
    const auto end = rest_.begin() + static_cast<std::ptrdiff_t>(kHeaderSize + length);
    std::vector<std::uint8_t> frame(rest_.begin(), end);
    rest_.erase(rest_.begin(), end);
    return frame;
}

}  // namespace agent_sim
