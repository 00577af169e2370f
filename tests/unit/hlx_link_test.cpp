// The agent link, byte for byte: the frames of every command on a real socket, composite messages
// and framed records against bytes written by hand, and receivers that believe nothing they read.

#include <winsock2.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#include "hlxCommand.h"
#include "hlxComposite.h"
#include "hlxRecord.h"
#include "loopback.h"

namespace {

using Bytes = std::vector<std::uint8_t>;
using Block = std::unique_ptr<std::uint8_t, decltype(&std::free)>;

class DatagramReceiver : public testing::Test {
protected:
    DatagramReceiver() { g_useTcp = 0; }
    ~DatagramReceiver() override { g_useTcp = -1; }

    std::string Received() { return ReceivedHex(m_daemon); }

private:
    const Loopback m_daemon{SOCK_DGRAM, kHlxUdpPort};
};

TEST_F(DatagramReceiver, GetsTheFrameOfEachCommand) {
    const std::pair<std::int32_t (*)(), const char*> bare[] = {
        {hlx_sendCommand2, "02"},  {hlx_requestReassess, "04"}, {hlx_sendCommand5, "05"},
        {hlx_sendCommand6, "06"},  {hlx_requestDownload, "07"}, {hlx_sendCommand12, "0C"},
        {hlx_sendCommand13, "0D"},
    };
    for (const auto& [send, code] : bare) {
        EXPECT_EQ(send(), 0);
        EXPECT_EQ(Received(), std::string("00 00 00 ") + code + " 00 00 00 05 00 00 00 00 00");
    }
    EXPECT_EQ(hlx_sendText(""), 0);
    EXPECT_EQ(Received(), "00 00 00 0A 00 00 00 01 00");
    EXPECT_EQ(hlx_sendComposite(1, B("a"), 1, B("b"), 0, nullptr), 0);
    EXPECT_EQ(Received(),
              "00 00 00 03 00 00 00 1B 00 00 00 01 00 00 00 01 00 00 00 01 00 00 00 00 00 00 00 00 "
              "61 62 00 00 00 00 00");
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
        const char *blob3, *message;
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
        EXPECT_EQ(hlx_parseCompositeChecked(message.get(), size, &lengths[0], &blobs[0],
                                            &lengths[1], &blobs[1], &lengths[2], &blobs[2]),
                  HLX_DONE);
        EXPECT_EQ(Hex(blobs[0], lengths[0]), "61 62 63");
        EXPECT_EQ(Hex(blobs[1], lengths[1]), "64 65");
        EXPECT_EQ(lengths[2], each.blob3 ? 4u : 0u);
        EXPECT_EQ(blobs[2], each.blob3 ? message.get() + 26 : nullptr);
    }
}

TEST(Composite, RefusesWhatCannotBeBuilt) {
    std::uint32_t size = 0;
    std::int32_t error = 77;
    EXPECT_FALSE(hlx_buildComposite(1, B("a"), 1, B("b"), 0, nullptr, &size, nullptr));
    EXPECT_FALSE(hlx_buildComposite(1, B("a"), 1, B("b"), 0, nullptr, nullptr, &error));
    EXPECT_EQ(error, 1);
    EXPECT_FALSE(hlx_buildComposite(1, nullptr, 1, B("b"), 0, nullptr, &size, &error));
    EXPECT_FALSE(hlx_buildComposite(1, B("a"), 0, B("b"), 0, nullptr, &size, &error));
    error = 77;
    EXPECT_FALSE(hlx_buildComposite(1, B("a"), 1, B("b"), UINT32_MAX, nullptr, &size, &error));
    EXPECT_EQ(error, 1);
    EXPECT_EQ(hlx_parseComposite(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr),
              HLX_REFUSED);
}

TEST(Composite, IsReadWithinItsSizeOnly) {
    const struct {
        std::uint32_t offset, value, size;
        bool fits;
    } cases[] = {
        {0, 0, 30, true},     {3, 10, 30, true},    {3, 11, 30, false}, {4, 0x80, 30, false},
        {8, 0xFF, 30, false}, {11, 8, 30, true},    {11, 9, 30, false}, {15, 10, 30, true},
        {15, 11, 30, false},  {19, 0xFF, 30, true}, {0, 0, 25, true},   {0, 0, 24, false},
        {0, 0, 19, false},
    };
    for (const auto& [offset, value, size, fits] : cases) {
        Bytes message = {0, 0, 0, 3, 0, 0, 0, 2, 0, 0, 0, 3};
        message.resize(30);
        message[offset] = static_cast<std::uint8_t>(value);
        const Bytes exact(message.begin(), message.begin() + size);
        std::uint32_t length;
        const std::uint8_t* blob;
        EXPECT_EQ(hlx_parseCompositeChecked(exact.data(), size, &length, &blob, &length, &blob,
                                            nullptr, nullptr),
                  fits ? HLX_DONE : HLX_REFUSED)
            << offset << " " << value << " " << size;
    }
}

// Type, first number, two texts, second number, third text, third number, then the integers.
std::string Decoded(const Bytes& record) {
    std::uint32_t type = 77, value1 = 77, value2 = 77, value3 = 77;
    std::int32_t count = 77;
    char* texts[3];
    std::uint32_t* ints;
    if (hlx_decodeRecord(record.data(), static_cast<std::uint32_t>(record.size()), &type, &value1,
                         &texts[0], &texts[1], &value2, &texts[2], &value3, &count,
                         &ints) != HLX_DONE)
        return "refused";
    const auto text = [&](int i) { return std::string(texts[i] ? texts[i] : "-") + " "; };
    const auto number = [](auto value) { return std::to_string(value) + " "; };
    std::string result = number(type) + number(value1) + text(0) + text(1) + number(value2) +
                         text(2) + number(value3) + number(count);
    for (std::int32_t i = 0; ints && i < count; ++i) result += number(ints[i]);
    result.pop_back();
    for (char* each : texts) std::free(each);
    std::free(ints);
    return result;
}

TEST(Record, IsEncodedAsItIsDecodedBack) {
    const struct {
        std::int32_t type;
        const char *a, *b, *c;
        std::int32_t intCount;
        const char *record, *decoded;
    } cases[] = {
        {0, "ignored", "", "", 0, "00 04 05 00", "0 77 - - 77 - 77 77"},
        {9, "ab", "", "c", 2,
         "00 32 05 09 00 00 00 01 00 00 00 02 00 00 00 00 00 00 00 02 00 00 00 01 00 00 00 03 "
         "00 00 00 02 89 AB CD EF 00 00 00 07 61 62 00 63 00 00 00 00 00 00",
         "9 1 ab - 2 c 3 2 2309737967 7"},
        {255, "a", "b", "c", 0,
         "00 2A 05 FF 00 00 00 01 00 00 00 01 00 00 00 01 00 00 00 02 00 00 00 01 00 00 00 03 "
         "00 00 00 00 61 00 62 00 63 00 00 00 00 00",
         "255 1 a b 2 c 3 0"},
    };
    const std::uint32_t ints[] = {0x89ABCDEF, 7};
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
        EXPECT_EQ(Decoded({record.get(), record.get() + size}), each.decoded);
    }
}

TEST(Record, RefusesWhatTheFormatCannotHold) {
    const Bytes bytes(kHlxLongestRecord);
    std::uint32_t size = 0;
    std::uint32_t* sizeWanted = &size;
    const auto errorOf = [&](std::int32_t type, std::uint32_t length, const std::uint8_t* blob,
                             std::int32_t intCount) {
        std::uint32_t error = 77;
        const Block record(hlx_encodeRecord(type, 1, length, blob, 0, nullptr, 2, 0, nullptr, 3,
                                            intCount, nullptr, sizeWanted, &error),
                           &std::free);
        EXPECT_EQ(record == nullptr, error != 0);
        return error;
    };
    EXPECT_EQ(errorOf(1, kHlxLongestRecord - 39, bytes.data(), 0), 0u);
    EXPECT_EQ(errorOf(1, kHlxLongestRecord - 38, bytes.data(), 0), 1u);
    EXPECT_EQ(errorOf(1, UINT32_MAX, bytes.data(), 0), 1u);
    for (const int type : {0, 1}) EXPECT_EQ(errorOf(type, 1, nullptr, 0), 1u);
    for (const int count : {-1, 1}) EXPECT_EQ(errorOf(1, 0, nullptr, count), 1u);
    for (const int type : {-1, 256}) EXPECT_EQ(errorOf(type, 0, nullptr, 0), 1u);
    sizeWanted = nullptr;
    EXPECT_EQ(errorOf(1, 0, nullptr, 0), 1u);
}

TEST(Record, IsDecodedWithinItsSizeOnly) {
    const struct {
        std::uint32_t offset, value, size;
    } cases[] = {
        {1, 40, 39}, {1, 38, 39},    {0, 1, 39},   {2, 4, 39},  {2, 6, 39},  {0, 0, 38},
        {11, 7, 39}, {11, 255, 39},  {8, 255, 39}, {15, 7, 39}, {23, 8, 39}, {20, 128, 39},
        {31, 2, 39}, {28, 0x80, 39}, {28, 64, 39}, {1, 31, 31}, {1, 5, 5},   {1, 3, 3},
    };
    Bytes sound = {0, 39, 5, 1};
    sound.resize(39);
    EXPECT_EQ(Decoded(sound), "1 0 - - 0 - 0 0");
    for (const auto& [offset, value, size] : cases) {
        Bytes record(sound);
        record[offset] = static_cast<std::uint8_t>(value);
        EXPECT_EQ(Decoded({record.begin(), record.begin() + size}), "refused") << offset;
    }
    EXPECT_EQ(Decoded({}), "refused");
}

}  // namespace
