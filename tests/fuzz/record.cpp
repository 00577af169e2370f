// Fuzzes the decoder of framed records: it reads within the given size only, and an accepted record
// has the same contents when it is encoded and decoded again.

#include "../unit/record_contents.h"
#include "harness.h"

static std::string_view Text(const char* blob) { return blob ? blob : ""; }

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const RecordContents first(data, size);
    if (first.result != HLX_DONE) {
        if (first.blobs[0] || first.blobs[1] || first.blobs[2] || first.ints) std::abort();
        return 0;
    }
    const auto length = [&](int i) {
        return static_cast<std::uint32_t>(Text(first.blobs[i]).size());
    };
    const auto blob = [&](int i) { return reinterpret_cast<const std::uint8_t*>(first.blobs[i]); };
    std::uint32_t againSize = 0, error = 0;
    std::uint8_t* const again =
        hlx_encodeRecord(static_cast<std::int32_t>(first.type), first.value1, length(0), blob(0),
                         length(1), blob(1), first.value2, length(2), blob(2), first.value3,
                         first.type ? first.intCount : 0, first.ints, &againSize, &error);
    if (!again) {
        if (size + 7 <= HLX_LONGEST_RECORD) std::abort();  // it adds at most its seven ends
        return 0;
    }
    const RecordContents second(again, againSize);
    if (second.result != HLX_DONE || second.type != first.type) std::abort();
    for (int i = 0; i < 3; ++i)
        if (Text(first.blobs[i]) != Text(second.blobs[i])) std::abort();
    std::free(again);
    return 0;
}
