// The agent link, byte for byte: the frames of every command on a real socket, composite messages
// and framed records against bytes written by hand, and receivers that believe nothing they read.

#include <winsock2.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <vector>

#include "hex.h"
#include "hlxCommand.h"
#include "hlxComposite.h"
#include "hlxRecord.h"

namespace {

using Bytes = std::vector<std::uint8_t>;
using Block = std::unique_ptr<std::uint8_t, decltype(&std::free)>;

const std::uint8_t* B(const char* text) { return reinterpret_cast<const std::uint8_t*>(text); }

// The daemon's end of the datagram transport.
class DatagramReceiver : public testing::Test {
protected:
    DatagramReceiver() {
        WSADATA data;
        WSAStartup(0x0202, &data);
        g_useTcp = 0;
        m_socket = socket(AF_INET, SOCK_DGRAM, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(kHlxUdpPort);
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        if (bind(m_socket, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0)
            throw std::runtime_error("the daemon's port is taken");
    }
    ~DatagramReceiver() override {
        closesocket(m_socket);
        WSACleanup();
        g_useTcp = -1;
    }

    std::string Received() {
        char buffer[2000];
        const int size = recv(m_socket, buffer, int{sizeof buffer}, 0);
        return size < 0 ? "nothing" : Hex(buffer, static_cast<std::size_t>(size));
    }

private:
    SOCKET m_socket;
};

TEST_F(DatagramReceiver, GetsTheFrameOfEachCommand) {
    const struct {
        std::int32_t (*send)();
        const char* frame;
    } cases[] = {
        {hlx_sendCommand2, "00 00 00 02 00 00 00 05 00 00 00 00 00"},
        {hlx_requestReassess, "00 00 00 04 00 00 00 05 00 00 00 00 00"},
        {hlx_sendCommand5, "00 00 00 05 00 00 00 05 00 00 00 00 00"},
        {hlx_sendCommand6, "00 00 00 06 00 00 00 05 00 00 00 00 00"},
        {hlx_requestDownload, "00 00 00 07 00 00 00 05 00 00 00 00 00"},
        {hlx_sendCommand12, "00 00 00 0C 00 00 00 05 00 00 00 00 00"},
        {hlx_sendCommand13, "00 00 00 0D 00 00 00 05 00 00 00 00 00"},
        {[] { return hlx_sendText(""); }, "00 00 00 0A 00 00 00 01 00"},
        {[] { return hlx_sendText("hi"); }, "00 00 00 0A 00 00 00 03 68 69 00"},
        {[] { return hlx_sendComposite(1, B("a"), 1, B("b"), 0, nullptr); },
         "00 00 00 03 00 00 00 1B 00 00 00 01 00 00 00 01 00 00 00 01 00 00 00 00 00 00 00 00 "
         "61 62 00 00 00 00 00"},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(each.send(), 0);
        EXPECT_EQ(Received(), each.frame);
    }
    const Bytes record(kHlxRecord8Size, 0xAB);
    EXPECT_EQ(hlx_sendRecord8(record.data()), 0);
    EXPECT_EQ(Received(), "00 00 00 08 00 00 01 E0 " + Hex(record.data(), kHlxRecord8Size));
    EXPECT_EQ(hlx_sendRecord9(record.data()), 0);
    EXPECT_EQ(Received(), "00 00 00 09 00 00 00 50 " + Hex(record.data(), kHlxRecord9Size));
}

TEST_F(DatagramReceiver, IsNotBotheredWithRefusedCommands) {
    std::int32_t error = 77;
    EXPECT_EQ(hlx_sendRecord8(nullptr), 1);
    EXPECT_EQ(hlx_sendRecord9(nullptr), 1);
    EXPECT_EQ(hlx_sendComposite(0, B("a"), 1, B("b"), 0, nullptr), 1);
    EXPECT_EQ(hlx_sendCommand(kHlxUdpPort, 1, nullptr, 5, &error), HLX_REFUSED);
    EXPECT_EQ(hlx_sendCommand(kHlxUdpPort, 1, B("a"), 0, &error), HLX_REFUSED);
    EXPECT_EQ(hlx_sendCommand(kHlxUdpPort, 1, B("a"), UINT32_MAX, &error), HLX_NO_MEMORY);
    EXPECT_EQ(hlx_sendCommandTcp(kHlxTcpPort, 1, B("a"), 0, &error), HLX_REFUSED);
    EXPECT_EQ(error, 77);
    const Bytes tooLong(70'000, 1);
    EXPECT_EQ(hlx_sendCommand(kHlxUdpPort, 1, tooLong.data(), 70'000, &error), HLX_SOCKET_FAILED);
    EXPECT_EQ(error, WSAEMSGSIZE);
    EXPECT_EQ(hlx_sendCommand(kHlxUdpPort, 0xFF, B("z"), 1, nullptr), HLX_DONE);
    EXPECT_EQ(Received(), "00 00 00 FF 00 00 00 01 7A") << "the first frame that went out";
}

TEST(Composite, IsBuiltAsItIsReadBack) {
    const struct {
        std::uint32_t length3;
        const char* blob3;
        const char* message;
    } cases[] = {
        {0, nullptr,
         "00 00 00 03 00 00 00 02 00 00 00 03 00 00 00 00 00 00 00 00 "
         "61 62 63 64 65 00 00 00 00 00"},
        {4, "wxyz",
         "00 00 00 03 00 00 00 02 00 00 00 03 00 00 00 04 00 00 00 06 "
         "61 62 63 64 65 00 77 78 79 7A 00 00 00 00"},
        {4, nullptr,
         "00 00 00 03 00 00 00 02 00 00 00 03 00 00 00 00 00 00 00 00 "
         "61 62 63 64 65 00 00 00 00 00 00 00 00 00"},
    };
    for (const auto& each : cases) {
        std::uint32_t size = 0;
        std::int32_t error = 77;
        const Block message(
            hlx_buildComposite(3, B("abc"), 2, B("de"), each.length3, B(each.blob3), &size, &error),
            &std::free);
        EXPECT_EQ(error, 0);
        EXPECT_EQ(Hex(message.get(), size), each.message);
        std::uint32_t lengths[3];
        const std::uint8_t* blobs[3];
        for (const bool checked : {false, true}) {
            const HlxResult result =
                checked ? hlx_parseCompositeChecked(message.get(), size, &lengths[0], &blobs[0],
                                                    &lengths[1], &blobs[1], &lengths[2], &blobs[2])
                        : hlx_parseComposite(message.get(), &lengths[0], &blobs[0], &lengths[1],
                                             &blobs[1], &lengths[2], &blobs[2]);
            EXPECT_EQ(result, HLX_DONE);
            EXPECT_EQ(Hex(blobs[0], lengths[0]), "61 62 63");
            EXPECT_EQ(Hex(blobs[1], lengths[1]), "64 65");
            EXPECT_EQ(lengths[2], each.blob3 ? 4u : 0u);
            EXPECT_EQ(blobs[2], each.blob3 ? message.get() + 26 : nullptr);
        }
    }
}

TEST(Composite, RefusesWhatCannotBeBuilt) {
    std::uint32_t size = 0;
    std::int32_t error = 77;
    EXPECT_EQ(hlx_buildComposite(1, B("a"), 1, B("b"), 0, nullptr, &size, nullptr), nullptr);
    EXPECT_EQ(hlx_buildComposite(1, B("a"), 1, B("b"), 0, nullptr, nullptr, &error), nullptr);
    EXPECT_EQ(error, 1);
    EXPECT_EQ(hlx_buildComposite(1, nullptr, 1, B("b"), 0, nullptr, &size, &error), nullptr);
    EXPECT_EQ(hlx_buildComposite(1, B("a"), 0, B("b"), 0, nullptr, &size, &error), nullptr);
    EXPECT_EQ(hlx_buildComposite(1, B("a"), 1, B("b"), UINT32_MAX, nullptr, &size, &error),
              nullptr);
    EXPECT_EQ(error, 1);
    EXPECT_EQ(hlx_parseComposite(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr),
              HLX_REFUSED);
}

TEST(Composite, IsReadWithinItsSizeOnly) {
    const struct {
        std::size_t offset;
        std::uint8_t value;
        std::uint32_t size;
        HlxResult result;
    } cases[] = {
        {0, 0, 30, HLX_DONE},       {3, 10, 30, HLX_DONE},      {3, 11, 30, HLX_REFUSED},
        {4, 0x80, 30, HLX_REFUSED}, {8, 0xFF, 30, HLX_REFUSED}, {11, 8, 30, HLX_DONE},
        {11, 9, 30, HLX_REFUSED},   {15, 10, 30, HLX_DONE},     {15, 11, 30, HLX_REFUSED},
        {19, 0xFF, 30, HLX_DONE},   {0, 0, 25, HLX_DONE},       {0, 0, 24, HLX_REFUSED},
        {0, 0, 19, HLX_REFUSED},    {0, 0, 0, HLX_REFUSED},
    };
    for (const auto& each : cases) {
        Bytes message = {0, 0, 0, 3, 0, 0, 0, 2, 0, 0, 0, 3};
        message.resize(30);
        message[each.offset] = each.value;
        const Bytes exact(message.begin(), message.begin() + each.size);
        std::uint32_t length;
        const std::uint8_t* blob;
        EXPECT_EQ(hlx_parseCompositeChecked(exact.data() ? exact.data() : B(""), each.size, &length,
                                            &blob, &length, &blob, nullptr, nullptr),
                  each.result)
            << each.offset << " " << int{each.value} << " " << each.size;
    }
}

struct Decoded {
    std::uint32_t type = 77, value1 = 77, value2 = 77, value3 = 77;
    std::int32_t intCount = 77;
    char* blobs[3];
    std::uint32_t* ints;
};

HlxResult Decode(const Bytes& record, std::uint32_t size, Decoded& to) {
    return hlx_decodeRecord(record.data(), size, &to.type, &to.value1, &to.blobs[0], &to.blobs[1],
                            &to.value2, &to.blobs[2], &to.value3, &to.intCount, &to.ints);
}

void Release(Decoded& decoded) {
    for (char* blob : decoded.blobs) std::free(blob);
    std::free(decoded.ints);
}

TEST(Record, IsEncodedAsItIsDecodedBack) {
    const struct {
        std::int32_t type;
        const char *a, *b, *c;
        std::int32_t intCount;
        const char* record;
    } cases[] = {
        {0, "ignored", "", "", 0, "00 04 05 00"},
        {1, "", "", "", 0,
         "00 27 05 01 00 00 00 01 00 00 00 00 00 00 00 00 00 00 00 02 00 00 00 00 00 00 00 03 "
         "00 00 00 00 00 00 00 00 00 00 00"},
        {9, "ab", "", "c", 1,
         "00 2E 05 09 00 00 00 01 00 00 00 02 00 00 00 00 00 00 00 02 00 00 00 01 00 00 00 03 "
         "00 00 00 01 89 AB CD EF 61 62 00 63 00 00 00 00 00 00"},
        {255, "a", "b", "c", 0,
         "00 2A 05 FF 00 00 00 01 00 00 00 01 00 00 00 01 00 00 00 02 00 00 00 01 00 00 00 03 "
         "00 00 00 00 61 00 62 00 63 00 00 00 00 00"},
    };
    const std::uint32_t ints[] = {0x89ABCDEF};
    const auto length = [](const char* text) { return static_cast<std::uint32_t>(strlen(text)); };
    for (const auto& each : cases) {
        std::uint32_t size = 0;
        std::uint32_t error = 77;
        const Block record(
            hlx_encodeRecord(each.type, 1, length(each.a), B(each.a), length(each.b), B(each.b), 2,
                             length(each.c), B(each.c), 3, each.intCount, ints, &size, &error),
            &std::free);
        EXPECT_EQ(error, 0u);
        EXPECT_EQ(Hex(record.get(), size), each.record);

        const Bytes bytes(record.get(), record.get() + size);
        Decoded decoded;
        ASSERT_EQ(Decode(bytes, size, decoded), HLX_DONE);
        EXPECT_EQ(decoded.type, static_cast<std::uint32_t>(each.type));
        if (each.type == 0) {
            EXPECT_EQ(decoded.value1, 77u) << "the numbers are left alone";
            EXPECT_EQ(decoded.blobs[0], nullptr);
            continue;
        }
        EXPECT_EQ(decoded.value1 * 100 + decoded.value2 * 10 + decoded.value3, 123u);
        const char* const texts[] = {each.a, each.b, each.c};
        for (int i = 0; i < 3; ++i) {
            if (*texts[i])
                EXPECT_STREQ(decoded.blobs[i], texts[i]);
            else
                EXPECT_EQ(decoded.blobs[i], nullptr);
        }
        EXPECT_EQ(decoded.intCount, each.intCount);
        EXPECT_EQ(decoded.ints ? decoded.ints[0] : 0, each.intCount ? ints[0] : 0);
        Release(decoded);
    }
}

TEST(Record, RefusesWhatTheFormatCannotHold) {
    std::uint32_t size = 0;
    const Bytes bytes(kHlxLongestRecord);
    const struct {
        std::int32_t type;
        std::uint32_t length;
        const std::uint8_t* blob;
        std::int32_t intCount;
        std::uint32_t* size;
        bool isMade;
    } cases[] = {
        {1, kHlxLongestRecord - 39, bytes.data(), 0, &size, true},
        {1, kHlxLongestRecord - 38, bytes.data(), 0, &size, false},
        {1, UINT32_MAX, bytes.data(), 0, &size, false},
        {1, 1, nullptr, 0, &size, false},
        {0, 1, nullptr, 0, &size, false},
        {1, 0, nullptr, 1, &size, false},
        {1, 0, nullptr, -1, &size, false},
        {1, 0, nullptr, 0, nullptr, false},
        {256, 0, nullptr, 0, &size, false},
        {-1, 0, nullptr, 0, &size, false},
    };
    for (const auto& each : cases) {
        std::uint32_t error = 77;
        const Block record(hlx_encodeRecord(each.type, 1, each.length, each.blob, 0, nullptr, 2, 0,
                                            nullptr, 3, each.intCount, nullptr, each.size, &error),
                           &std::free);
        EXPECT_EQ(record != nullptr, each.isMade) << each.type << " " << each.length;
        EXPECT_EQ(error, each.isMade ? 0u : 1u);
    }
}

TEST(Record, IsDecodedWithinItsSizeOnly) {
    const struct {
        std::size_t offset;
        std::uint8_t value;
        std::uint32_t size;
    } cases[] = {
        {1, 40, 39}, {1, 38, 39},    {0, 1, 39},   {2, 4, 39},  {2, 6, 39},  {0, 0, 38},
        {11, 7, 39}, {11, 255, 39},  {8, 255, 39}, {15, 7, 39}, {23, 8, 39}, {20, 128, 39},
        {31, 2, 39}, {28, 0x80, 39}, {28, 64, 39}, {1, 31, 31}, {1, 5, 5},   {1, 3, 3},
    };
    Bytes sound(39);
    sound[1] = 39, sound[2] = 5, sound[3] = 1;
    Decoded decoded;
    ASSERT_EQ(Decode(sound, 39, decoded), HLX_DONE);
    for (const auto& each : cases) {
        Bytes record(sound);
        record[each.offset] = each.value;
        record.resize(each.size);
        record.shrink_to_fit();
        EXPECT_EQ(Decode(record, each.size, decoded), HLX_REFUSED) << each.offset;
    }
    EXPECT_EQ(hlx_decodeRecord(nullptr, 39, &decoded.type, &decoded.value1, nullptr, nullptr,
                               &decoded.value2, nullptr, &decoded.value3, nullptr, nullptr),
              HLX_REFUSED);
}

}  // namespace
