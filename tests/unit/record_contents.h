// All that the decoder of framed records gives for one record, released with the object.
#pragma once

#include <cstdint>
#include <cstdlib>

#include "hlxRecord.h"

struct RecordContents {
    static constexpr std::uint32_t kUntouched = 77;
    std::uint32_t type = kUntouched, value1 = kUntouched, value2 = kUntouched, value3 = kUntouched;
    std::int32_t intCount = kUntouched;
    char* blobs[3] = {};
    std::uint32_t* ints = nullptr;
    const HlxResult result;

    RecordContents(const std::uint8_t* record, std::size_t size)
        : result(hlx_decodeRecord(record, static_cast<std::uint32_t>(size), &type, &value1,
                                  &blobs[0], &blobs[1], &value2, &blobs[2], &value3, &intCount,
                                  &ints)) {}
    RecordContents(const RecordContents&) = delete;
    ~RecordContents() {
        for (char* const blob : blobs) std::free(blob);
        std::free(ints);
    }
};
