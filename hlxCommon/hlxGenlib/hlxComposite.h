// The composite message, the payload of command 3: a header of big-endian numbers, two blobs and an
// optional third one.
//
//     offset  size
//          0     4   length of blob 1
//          4     4   length of blob 2
//          8     4   offset of blob 2 from byte 20
//         12     4   length of blob 3, 0 if there is none
//         16     4   offset of blob 3 from byte 20, 0 if there is none
//         20         blob 1, blob 2, a zero byte, blob 3, four zero bytes
#pragma once

#include <cstdint>

#include "hlxResult.h"

constexpr std::uint32_t HLX_COMPOSITE_HEADER_SIZE = 20;

// Returns the message in a new block of `*size` bytes, to be released with free, and stores 0 in
// `*error`. Returns null, and stores 1 if `error` is not null, if blob 1 or 2 is empty,
// an out-parameter is null or there is no memory. Blob 3 is left out if its length is 0 or its
// pointer null; its length is still included in the size (part of the interface, do not correct).
std::uint8_t* hlx_buildComposite(std::uint32_t length1, const std::uint8_t* blob1,
                                 std::uint32_t length2, const std::uint8_t* blob2,
                                 std::uint32_t length3, const std::uint8_t* blob3,
                                 std::uint32_t* size, std::int32_t* error);

// Finds the blobs of an untrusted message of `size` bytes: pointers into the message, null for a
// missing blob 3. The out-parameters of blob 3 may be null. Returns 0; or HLX_REFUSED, with nothing
// returned, if another pointer is null or a blob does not lie within the message.
HlxResult hlx_parseCompositeChecked(const std::uint8_t* message, std::uint32_t size,
                                    std::uint32_t* length1, const std::uint8_t** blob1,
                                    std::uint32_t* length2, const std::uint8_t** blob2,
                                    std::uint32_t* length3, const std::uint8_t** blob3);

// The same for a message that is known to be valid: its lengths and offsets are not checked.
HlxResult hlx_parseComposite(const std::uint8_t* message, std::uint32_t* length1,
                             const std::uint8_t** blob1, std::uint32_t* length2,
                             const std::uint8_t** blob2, std::uint32_t* length3,
                             const std::uint8_t** blob3);
