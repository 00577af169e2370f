// agent_sim: its description of valid and malformed frames, its listener and its requests; the
// applet's reader reads back the notifications that it writes.

#include <future>

#include "Arguments.h"
#include "Commands.h"
#include "Daemon.h"
#include "FrameListener.h"
#include "FrameText.h"
#include "Notification.h"
#include "hlxCommand.h"
#include "temp_path.h"

namespace agent_sim {
namespace {

using testing::StartsWith;
using Frame = std::vector<std::uint8_t>;

std::string Described(const Frame& frame) {
    std::string text;
    for (const std::string& line : DescribeFrame(frame)) text += line + "\n";
    return text;
}

TEST(FrameText, DescribesCommandPayloadAndBytes) {
    const std::pair<Frame, const char*> cases[] = {
        {{0, 0, 0, 4, 0, 0, 0, 5, 0, 0, 0, 0, 0},
         "command 4, reassess health, 5 bytes\n  00 00 00 04 00 00 00 05 00 00 00 00 00\n"},
        {{0, 0, 0, 10, 0, 0, 0, 1, 'H'},
         "command 10, text, 1 byte\n  \"H\", without its terminating NUL\n"},
        {{0, 0, 0, 3, 0, 0, 0, 26, 0, 0, 0, 1,   0,   0, 0, 1, 0,
          0, 0, 1, 0, 0, 0, 0, 0,  0, 0, 0, 'a', 'b', 0, 0, 0, 0},
         "command 3, composite message, 26 bytes\n  blob 1, 1 byte: \"a\"\n  blob 2, 1 byte: "
         "\"b\"\n"
         "  00 00 00 03 00 00 00 1a 00 00 00 01 00 00 00 01\n"
         "  00 00 00 01 00 00 00 00 00 00 00 00 61 62 00 00\n  00 00\n"},
        {{0, 0, 0, 3, 0, 0, 0, 2, 9, 9},
         "command 3, composite message, 2 bytes\n"
         "  a composite message whose lengths do not fit its size\n"},
        {{0, 0, 0, 9, 0, 0, 0, 1, 7}, "command 9, record, 1 byte\n  the command has 80 bytes\n"},
        {{0, 0, 0, 7, 255, 255, 255, 255, 0},
         "command 7, download updates, 1 byte\n"
         "  the header announces 4294967295 bytes, more than are accepted\n"},
        {{1, 2}, "not a frame: 2 bytes, shorter than a header\n  01 02\n"},
    };
    for (const auto& [frame, text] : cases) EXPECT_THAT(Described(frame), StartsWith(text));
    EXPECT_EQ(CommandOf(cases[0].first), 4u);
    for (const std::size_t malformed : {4u, 5u, 6u})
        EXPECT_FALSE(CommandOf(cases[malformed].first));
}

TEST(FrameListener, ContinuesAfterMalformedInput) {
    const SocketsInUse sockets;
    std::promise<std::vector<std::string>> received;
    std::vector<std::string> sizes;
    const FrameListener listener([&](const std::string& transport, Bytes frame) {
        sizes.push_back(transport + std::to_string(frame.size()));
        if (transport == "UDP") received.set_value(sizes);
    });
    const auto transmit = [](int type, std::uint16_t port, const Frame& frame) {
        const sockaddr_in address = hlx_loopbackAddress(port);
        const CHlxSocket peer(socket(AF_INET, type, 0));
        connect(peer.Handle(), reinterpret_cast<const sockaddr*>(&address), sizeof address);
        send(peer.Handle(), reinterpret_cast<const char*>(frame.data()),
             static_cast<int>(frame.size()), 0);
        char byte;
        EXPECT_TRUE(type == SOCK_DGRAM || recv(peer.Handle(), &byte, 1, 0) <= 0)
            << "the peer was not disconnected";
    };
    transmit(SOCK_DGRAM, HLX_UDP_PORT, {});
    transmit(SOCK_STREAM, HLX_TCP_PORT, {0, 0, 0, 10, 255, 255, 255, 255, 'x'});
    transmit(SOCK_DGRAM, HLX_UDP_PORT, {0, 0, 0, 4, 0, 0, 0, 5, 0, 0, 0, 0, 0});
    EXPECT_EQ(received.get_future().get(), (std::vector<std::string>{"TCP9", "UDP13"}));
}

TEST(Notification, IsReadAsItWasWritten) {
    const TempPath file("notification");
    const Notification written{.state = "high",
                               .enabled = true,
                               .displayIcon = false,
                               .autoInstall = true,
                               .message = "A&B say \"<now>\".",
                               .messagePopup = true,
                               .url = "http://localhost/?a=1&b=\"2\"",
                               .urlPopup = true,
                               .restrictions = {"10.0.0.1-10.0.0.254", "1.2.3.4-5.6.7.8"}};
    using std::chrono::floor, std::chrono::seconds;
    const auto second = floor<seconds>(std::filesystem::file_time_type::clock::now());
    WriteNotification(file.c_str(), written);
    EXPECT_GT(floor<seconds>(std::filesystem::last_write_time(file.c_str())), second);
    const auto read = ReadNotification(file.c_str());
    ASSERT_TRUE(read);
    EXPECT_EQ(*read, written);
    EXPECT_FALSE(ReadNotification("no such file"));
}

TEST(Arguments, AreSplitAndOptionsFoundAnywhere) {
    Arguments arguments(SplitLine(R"(health --page "a b" low --disabled --page c)"));
    EXPECT_EQ(arguments.TakeValue("--page"), "c");
    EXPECT_TRUE(arguments.TakeFlag("--disabled"));
    EXPECT_EQ(arguments.RequireWord("verb"), "health");
    EXPECT_EQ(arguments.RequireWord("state"), "low");
    EXPECT_NO_THROW(arguments.ExpectNoMore());
    EXPECT_THROW(arguments.RequireWord("more"), UsageError);
    EXPECT_THROW(SplitLine("an \"open quote"), UsageError);
    EXPECT_EQ(SplitLine(R"(C:\new\x.msi)")[0], R"(C:\new\x.msi)");
    for (const char* request :
         {"offer a:b 1", "offer a 1 \"c\nd\"", "offer a 1 c \"d\ne\"", "health low --message \1"})
        EXPECT_THROW(Understand(Arguments(SplitLine(request))), UsageError) << request;
    EXPECT_NO_THROW(Understand(Arguments(SplitLine("offer a 1 c d:e"))));
    for (const char* none : {"12x", "", "4294967296", "99999999999999999999"})
        EXPECT_THROW(ParseNumber(none, kAnyCode), UsageError) << none;
    EXPECT_EQ(ParseNumber("0x80070002", kAnyCode), 0x80070002);
}

}  // namespace
}  // namespace agent_sim
