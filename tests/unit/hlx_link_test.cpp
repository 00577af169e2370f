// The agent link, byte for byte: the frames of every command on a socket, composite messages and
// framed records compared with bytes written by hand, and readers of invalid bytes.

#include "hlxBigEndian.h"
#include "hlxCommand.h"
#include "hlxComposite.h"
#include "hlxOwned.h"
#include "loopback.h"
#include "record_contents.h"

namespace {

using Bytes = std::vector<std::uint8_t>;
using Block = HlxBlock<std::uint8_t>;

class DatagramReceiver : public testing::Test {
protected:
    DatagramReceiver() { g_useTcp = 0; }
    ~DatagramReceiver() override { g_useTcp = -1; }

    std::string Received() { return ReceivedHex(m_daemon); }

private:
    const Loopback m_daemon{SOCK_DGRAM, HLX_UDP_PORT};
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
    const Bytes record(HLX_RECORD_8_SIZE, 0xAB);
    EXPECT_EQ(hlx_sendRecord8(record.data()), 0);
    EXPECT_EQ(Received(), "00 00 00 08 00 00 01 E0 " + Hex(record.data(), HLX_RECORD_8_SIZE));
    EXPECT_EQ(hlx_sendRecord9(record.data()), 0);
    EXPECT_EQ(Received(), "00 00 00 09 00 00 00 50 " + Hex(record.data(), HLX_RECORD_9_SIZE));
}

TEST_F(DatagramReceiver, ReceivesNothingForRejectedCommands) {
    std::int32_t error = 77;
    EXPECT_EQ(hlx_sendRecord8(nullptr), 1);
    EXPECT_EQ(hlx_sendRecord9(nullptr), 1);
    EXPECT_EQ(hlx_sendComposite(0, B("a"), 1, B("b"), 0, nullptr), 1);
    EXPECT_EQ(hlx_sendCommand(HLX_UDP_PORT, 1, nullptr, 5, &error), HLX_REFUSED);
    EXPECT_EQ(hlx_sendCommand(HLX_UDP_PORT, 1, B("a"), 0, &error), HLX_REFUSED);
    EXPECT_EQ(hlx_sendCommand(HLX_UDP_PORT, 1, B("a"), UINT32_MAX, &error), HLX_NO_MEMORY);
    EXPECT_EQ(hlx_sendCommandTcp(HLX_TCP_PORT, 1, B("a"), 0, &error), HLX_REFUSED);
    EXPECT_EQ(error, 77);
    const Bytes tooLong(70'000, 1);
    EXPECT_EQ(hlx_sendCommand(HLX_UDP_PORT, 1, tooLong.data(), 70'000, &error), HLX_SOCKET_FAILED);
    EXPECT_EQ(error, WSAEMSGSIZE);
    EXPECT_EQ(hlx_sendCommand(HLX_UDP_PORT, 0xFF, B("z"), 1, nullptr), HLX_DONE);
    EXPECT_EQ(hlx_sendCommand(HLX_UDP_PORT, 0xFF, B("z"), 1, &error), HLX_DONE);
    EXPECT_EQ(error, 0);
    EXPECT_EQ(Received(), "00 00 00 FF 00 00 00 01 7A") << "the first frame that was sent";
}

TEST(Composite, IsBuiltAsItIsReadBack) {
    const struct {
        std::uint32_t length3;
        const char *blob3, *message;
    } cases[] = {
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
        const Block message(hlx_buildComposite(3, B("abc"), 2, B("de"), each.length3, B(each.blob3),
                                               &size, &error));
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
}

TEST(Composite, IsReadWithinItsSizeOnly) {
    constexpr std::uint32_t kHalf = 0x80000000;  // twice this is 0 in 32 bits
    const struct {
        std::uint32_t header[5], size;
        bool fits;
    } cases[] = {
        {{3, 2, 3}, 25, true},           {{3, 2, 3}, 24, false},
        {{3, 2, 3}, 19, false},          {{10, 2, 3}, 30, true},
        {{11, 2, 3}, 30, false},         {{kHalf, 2, 3}, 30, false},
        {{3, 2, 8}, 30, true},           {{3, 2, 9}, 30, false},
        {{3, kHalf, kHalf}, 30, false},  {{3, 2, 3, 10, 0}, 30, true},
        {{3, 2, 3, 11, 0}, 30, false},   {{3, 2, 3, UINT32_MAX, 10}, 30, false},
        {{3, 2, 3, 0, kHalf}, 30, true},
    };
    std::uint32_t length;
    const std::uint8_t* blob;
    for (const auto& [header, size, fits] : cases) {
        Bytes message(size);
        for (std::uint32_t i = 0; i < 5 && 4 * i + 4 <= size; ++i)
            hlx_storeBig32(&message[4 * i], header[i]);
        EXPECT_EQ(hlx_parseCompositeChecked(message.data(), size, &length, &blob, &length, &blob,
                                            nullptr, nullptr),
                  fits ? HLX_DONE : HLX_REFUSED)
            << Hex(message.data(), size);
    }
    const Bytes message(25);
    for (int missing = 0; missing <= 5; ++missing) {
        const auto orNull = [&](int i, auto* wanted) { return i == missing ? nullptr : wanted; };
        EXPECT_EQ(
            hlx_parseComposite(orNull(0, message.data()), orNull(1, &length), orNull(2, &blob),
                               orNull(3, &length), orNull(4, &blob), nullptr, nullptr),
            missing < 5 ? HLX_REFUSED : HLX_DONE);
    }
}

// Type, first number, two texts, second number, third text, third number, then the integers.
std::string Decoded(const Bytes& record) {
    const RecordContents read(record.data(), record.size());
    if (read.result != HLX_DONE) return "refused";
    const auto text = [&](int i) { return read.blobs[i] ? read.blobs[i] : "-"; };
    std::ostringstream all;
    all << read.type << " " << read.value1 << " " << text(0) << " " << text(1) << " " << read.value2
        << " " << text(2) << " " << read.value3 << " " << read.intCount;
    for (std::int32_t i = 0; read.ints && i < read.intCount; ++i) all << " " << read.ints[i];
    return all.str();
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
        const Block record(hlx_encodeRecord(each.type, 1, length(each.a), B(each.a), length(each.b),
                                            B(each.b), 2, length(each.c), B(each.c), 3,
                                            each.intCount, ints, &size, &error));
        EXPECT_EQ(error, 0u);
        EXPECT_EQ(Hex(record.get(), size), each.record);
        EXPECT_EQ(Decoded({record.get(), record.get() + size}), each.decoded);
    }
}

TEST(Record, RefusesWhatTheFormatCannotHold) {
    const Bytes bytes(HLX_LONGEST_RECORD);
    std::uint32_t size = 0;
    std::uint32_t* sizeWanted = &size;
    const auto errorOf = [&](std::int32_t type, std::uint32_t length, const std::uint8_t* blob,
                             std::int32_t intCount) {
        std::uint32_t error = 77;
        const Block record(hlx_encodeRecord(type, 1, length, blob, 0, nullptr, 2, 0, nullptr, 3,
                                            intCount, nullptr, sizeWanted, &error));
        EXPECT_EQ(record == nullptr, error != 0);
        return error;
    };
    EXPECT_EQ(errorOf(1, HLX_LONGEST_RECORD - 39, bytes.data(), 0), 0u);
    for (const std::uint32_t length : {HLX_LONGEST_RECORD - 38u, UINT32_MAX})
        EXPECT_EQ(errorOf(1, length, bytes.data(), 0), 1u);
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
    Bytes full(sound);
    full[23] = 7;  // the third blob up to the end
    EXPECT_EQ(Decoded(full), "1 0 - - 0  0 0");
    for (const auto& [offset, value, size] : cases) {
        Bytes record(sound);
        record[offset] = static_cast<std::uint8_t>(value);
        EXPECT_EQ(Decoded({record.begin(), record.begin() + size}), "refused") << offset;
    }
    EXPECT_EQ(Decoded({}), "refused");
    for (int missing = 0; missing <= 6; ++missing) {
        const auto orNull = [&](int i, auto* wanted) { return i == missing ? nullptr : wanted; };
        std::uint32_t number, *ints;
        std::int32_t count;
        char* blob;
        EXPECT_EQ(hlx_decodeRecord(orNull(0, sound.data()), 39, orNull(1, &number),
                                   orNull(2, &number), &blob, &blob, orNull(3, &number), &blob,
                                   orNull(4, &number), orNull(5, &count), &ints),
                  missing < 6 ? HLX_REFUSED : HLX_DONE);
    }
}

}  // namespace
