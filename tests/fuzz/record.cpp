// Feeds the decoder of framed records: it stays within the size it was told, and what it accepts
// has the same contents when it is encoded and decoded again.

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "hlxRecord.h"

namespace {

struct Decoded {
    std::uint32_t type, value1 = 0, value2 = 0, value3 = 0;
    char* blobs[3] = {};
    std::int32_t intCount = 0;
    std::uint32_t* ints = nullptr;

    HlxResult From(const std::uint8_t* record, std::uint32_t size) {
        return hlx_decodeRecord(record, size, &type, &value1, &blobs[0], &blobs[1], &value2,
                                &blobs[2], &value3, &intCount, &ints);
    }
    ~Decoded() {
        for (char* blob : blobs) std::free(blob);
        std::free(ints);
    }
};

std::uint32_t Length(const char* blob) {
    return blob ? static_cast<std::uint32_t>(std::strlen(blob)) : 0;
}

bool Same(const char* left, const char* right) {
    return Length(left) == Length(right) &&
           std::memcmp(left ? left : "", right ? right : "", Length(left)) == 0;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Decoded first;
    if (first.From(data, static_cast<std::uint32_t>(size)) != HLX_DONE) {
        if (first.blobs[0] || first.blobs[1] || first.blobs[2] || first.ints) std::abort();
        return 0;
    }
    const auto blob = [&first](int i) {
        return reinterpret_cast<const std::uint8_t*>(first.blobs[i]);
    };
    std::uint32_t againSize = 0;
    std::uint32_t error = 0;
    std::uint8_t* const again = hlx_encodeRecord(
        static_cast<std::int32_t>(first.type), first.value1, Length(first.blobs[0]), blob(0),
        Length(first.blobs[1]), blob(1), first.value2, Length(first.blobs[2]), blob(2),
        first.value3, first.intCount, first.ints, &againSize, &error);
    if (!again) {
        if (size + 7 <= kHlxLongestRecord) std::abort();  // the encoder adds at most its seven ends
        return 0;
    }
    Decoded second;
    if (second.From(again, againSize) != HLX_DONE || second.type != first.type) std::abort();
    for (int i = 0; i < 3; ++i)
        if (!Same(first.blobs[i], second.blobs[i])) std::abort();
    std::free(again);
    return 0;
}
