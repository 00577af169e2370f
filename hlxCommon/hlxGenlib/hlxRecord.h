// Framed records: self-describing messages of three numbers, an array of integers and three byte
// strings. All numbers are big-endian.
//
//     offset  size
//          0     2   total size in bytes
//          2     1   format version, 5
//          3     1   record type, 1 to 255
//          4     4   value1
//          8     4   length of blob A
//         12     4   length of blob B
//         16     4   value2
//         20     4   length of blob C
//         24     4   value3
//         28     4   count of the integers, signed
//         32         the integers, 4 bytes each; blob A and blob B, each with a zero byte behind it
//                    if it is not empty; blob C; zero bytes up to the total size
//
// The total size is 39 bytes plus the sizes of the integers and blobs. 39 is 7 more than the fields
// need (part of the interface, do not correct). A record of type 0 consists of its first four
// bytes, with a total size of 4. Both functions may run on any thread.
#pragma once

#include <cstdint>

#include "hlxResult.h"

constexpr std::uint32_t HLX_LONGEST_RECORD = 65535;  // bytes, the maximum of the size field

// Returns the record in a new block of `*size` bytes, to be released with free, and stores 0 in
// `*error`, which is never null. Returns null and stores 1 if the type is not 0 to 255, a blob or
// the integers have a length but no pointer, `size` is null, the record would be longer than
// HLX_LONGEST_RECORD or there is no memory. Lengths are in bytes.
std::uint8_t* hlx_encodeRecord(std::int32_t type, std::uint32_t value1, std::uint32_t lengthA,
                               const std::uint8_t* blobA, std::uint32_t lengthB,
                               const std::uint8_t* blobB, std::uint32_t value2,
                               std::uint32_t lengthC, const std::uint8_t* blobC,
                               std::uint32_t value3, std::int32_t intCount,
                               const std::uint32_t* ints, std::uint32_t* size,
                               std::uint32_t* error);

// Reads an untrusted record of `size` bytes. The lengths of the blobs are not returned; they are in
// the header. The blobs are returned as copies with a zero byte added and the integers in the
// machine's order, each in a block of its own to be released with free; null for an empty one. The
// out-parameters of the blobs and the integers must be given. A record of type 0 does not change
// the numbers.
//
// Returns 0, or HLX_REFUSED with no block returned:
//   - if another out-parameter is null; nothing is written;
//   - if the header does not fit the size or the version; the type is 0, nothing else is written;
//   - if the record is too short for its numbers; the type is returned, the blocks are null;
//   - if the integers and blobs do not lie within the size or there is no memory; type and numbers
//     are returned, the blocks are null.
HlxResult hlx_decodeRecord(const std::uint8_t* record, std::uint32_t size, std::uint32_t* type,
                           std::uint32_t* value1, char** blobA, char** blobB, std::uint32_t* value2,
                           char** blobC, std::uint32_t* value3, std::int32_t* intCount,
                           std::uint32_t** ints);
