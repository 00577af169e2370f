// Frames of the command channel as text.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace agent_sim {

using Bytes = std::span<const std::uint8_t>;

// In bytes. A peer that announces a longer payload is disconnected.
constexpr std::uint32_t kLongestPayload = 1 << 20;

// The command number of a frame; nothing if one of its lengths is not correct.
std::optional<std::uint32_t> CommandOf(Bytes frame);

// Describes a frame in lines: the command with its name and length, an error in its lengths, the
// contents of a known payload, and at most 1024 bytes in hexadecimal.
std::vector<std::string> DescribeFrame(Bytes frame);

// Splits a stream of bytes into frames.
class FrameSplitter {
public:
    void Append(Bytes bytes);
    // Removes and returns the next complete frame.
    std::optional<std::vector<std::uint8_t>> Next();
    // The payload length in the header of the next frame; 0 while that is not known.
    std::uint32_t Announced() const;
    // The received bytes that are not a complete frame.
    Bytes Rest() const { return rest_; }

private:
    std::vector<std::uint8_t> rest_;
};

}  // namespace agent_sim
