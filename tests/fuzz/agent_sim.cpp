// Feeds the agent's stand-in: frames in pieces of any size, and requests, which are understood but
// not done.

#include "Commands.h"
#include "FrameText.h"
#include "HostLog.h"
#include "harness.h"

using namespace agent_sim;

namespace {

void ReadFrames(Bytes bytes) {
    for (const std::string& line : DescribeFrame(bytes))
        for (const char c : line)
            if (c < ' ' || c > '~') std::abort();
    CommandOf(bytes);
    FrameSplitter splitter;
    std::vector<std::uint8_t> whole;
    for (std::size_t at = 0, piece = 1 + bytes.size() % 5; at < bytes.size(); at += piece) {
        splitter.Append(bytes.subspan(at, std::min(piece, bytes.size() - at)));
        while (const auto frame = splitter.Next())
            whole.insert(whole.end(), frame->begin(), frame->end());
    }
    whole.insert(whole.end(), splitter.Rest().begin(), splitter.Rest().end());
    if (!std::ranges::equal(whole, bytes)) std::abort();
}

void ReadRequest(const std::string& line) {
    try {
        Arguments arguments(SplitLine(line));
        TakeLogSettings(arguments);
        Understand(std::move(arguments));
    } catch (const UsageError&) {
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ReadFrames({data, size});
    ReadRequest({reinterpret_cast<const char*>(data), size});
    return 0;
}
