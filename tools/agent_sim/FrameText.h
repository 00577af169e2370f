// Frames of the command channel in words, for people who look at what the applet sends.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace agent_sim {

using Bytes = std::span<const std::uint8_t>;

// Who announces more bytes than these is not listened to.
constexpr std::uint32_t kLongestPayload = 1 << 20;

// The command number of a frame; nothing if there is anything wrong with its lengths.
std::optional<std::uint32_t> CommandOf(Bytes frame);

// What the frame says, first line first: the command with its name and length, what is wrong with
// it if anything is, what its payload holds as far as that is known, and its first bytes, a
// kilobyte at most, in hexadecimal.
std::vector<std::string> DescribeFrame(Bytes frame);

// Cuts a stream of bytes into frames.
class FrameSplitter {
public:
    void Append(Bytes bytes);
    // The next frame that is complete.
    std::optional<std::vector<std::uint8_t>> Next();
    // The size of the frame that comes, without its header; 0 while that is not known.
    std::uint32_t Announced() const;
    // What has come and is no complete frame.
    Bytes Rest() const { return rest_; }

private:
    std::vector<std::uint8_t> rest_;
};

}  // namespace agent_sim
