// Feeds agent_sim: frames in pieces of any size, composite messages among them, and requests, which
// are parsed but not carried out.

#include "Commands.h"
#include "FrameText.h"
#include "HostLog.h"
#include "harness.h"

using namespace agent_sim;

void Fuzz(Bytes input) {
    for (const std::string& line : DescribeFrame(input))
        Require(std::ranges::all_of(line, [](char c) { return c >= ' ' && c <= '~'; }));
    CommandOf(input);
    FrameSplitter splitter;
    std::string whole;
    for (std::size_t at = 0, piece = 1 + input.size() % 5; at < input.size(); at += piece) {
        splitter.Append(input.subspan(at, std::min(piece, input.size() - at)));
        while (const auto frame = splitter.Next()) whole += Text(*frame);
    }
    Require(whole + Text(splitter.Rest()) == Text(input));
    try {
        Arguments arguments(SplitLine(Text(input)));
        TakeLogSettings(arguments);
        Understand(std::move(arguments));
    } catch (const UsageError&) {
    }
}
