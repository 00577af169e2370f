// Fuzzes the decoder of framed records: it reads within the given size only, and an accepted record
// has the same contents when it is encoded and decoded again.

#include "../unit/record_contents.h"
#include "harness.h"

static std::string_view TextOf(const char* blob) { return blob ? blob : ""; }

void Fuzz(Bytes input) {
    const RecordContents first(input.data(), input.size());
    if (first.result != HLX_DONE)
        return Require(!first.blobs[0] && !first.blobs[1] && !first.blobs[2] && !first.ints);
    const auto length = [&](int i) {
        return static_cast<std::uint32_t>(TextOf(first.blobs[i]).size());
    };
    const auto blob = [&](int i) { return reinterpret_cast<const std::uint8_t*>(first.blobs[i]); };
    std::uint32_t size = 0, error = 0;
    std::uint8_t* const again =
        hlx_encodeRecord(static_cast<std::int32_t>(first.type), first.value1, length(0), blob(0),
                         length(1), blob(1), first.value2, length(2), blob(2), first.value3,
                         first.type ? first.intCount : 0, first.ints, &size, &error);
    // It adds at most its seven ends.
    if (!again) return Require(input.size() + 7 > HLX_LONGEST_RECORD);
    const RecordContents second(again, size);
    Require(second.result == HLX_DONE && second.type == first.type &&
            std::ranges::equal(first.blobs, second.blobs, {}, TextOf, TextOf));
    std::free(again);
}
