#include "hlxRecord.h"

#include <cstdlib>
#include <cstring>

#include "hlxBigEndian.h"
#include "hlxOwned.h"

namespace {

constexpr std::uint32_t kVersion = 5;
constexpr std::uint32_t kBareSize = 4;    // of a record of type 0
constexpr std::uint32_t kFixedSize = 32;  // header, numbers and lengths
constexpr std::uint32_t kOverhead = 39;   // the fixed part and seven bytes for the ends
constexpr std::uint32_t kIntSize = 4;

template <class T>
HlxBlock<T> Allocate(std::size_t size) {
    return HlxBlock<T>(static_cast<T*>(std::malloc(size)));
}

// Bytes that a blob takes when another one follows it.
std::uint64_t Stride(std::uint32_t length) { return length ? std::uint64_t{length} + 1 : 0; }

// The position behind the blob that was written at `to` and the zero byte behind it.
std::uint8_t* StoreBlob(std::uint8_t* to, const std::uint8_t* blob, std::uint32_t length) {
    if (!length) return to;
    std::memcpy(to, blob, length);
    to[length] = 0;
    return to + Stride(length);
}

HlxBlock<char> CopyBlob(const std::uint8_t* from, std::uint32_t length) {
    if (!length) return nullptr;
    HlxBlock<char> copy = Allocate<char>(std::size_t{length} + 1);
    if (copy) {
        std::memcpy(copy.get(), from, length);
        copy.get()[length] = 0;
    }
    return copy;
}

HlxBlock<std::uint32_t> CopyInts(const std::uint8_t* from, std::uint32_t count) {
    if (!count) return nullptr;
    HlxBlock<std::uint32_t> copy = Allocate<std::uint32_t>(std::size_t{count} * kIntSize);
    for (std::uint32_t i = 0; copy && i < count; ++i)
        copy.get()[i] = hlx_loadBig32(from + std::size_t{i} * kIntSize);
    return copy;
}

}  // namespace

std::uint8_t* hlx_encodeRecord(std::int32_t type, std::uint32_t value1, std::uint32_t lengthA,
                               const std::uint8_t* blobA, std::uint32_t lengthB,
                               const std::uint8_t* blobB, std::uint32_t value2,
                               std::uint32_t lengthC, const std::uint8_t* blobC,
                               std::uint32_t value3, std::int32_t intCount,
                               const std::uint32_t* ints, std::uint32_t* size,
                               std::uint32_t* error) {
    *error = HLX_REFUSED;
    if ((lengthA && !blobA) || (lengthB && !blobB) || (lengthC && !blobC) || (intCount && !ints) ||
        !size || type < 0 || type > 0xFF || intCount < 0)
        return nullptr;
    const auto count = static_cast<std::uint32_t>(intCount);
    const std::uint64_t total =
        type == 0 ? kBareSize
                  : kOverhead + std::uint64_t{count} * kIntSize + lengthA + lengthB + lengthC;
    if (total > HLX_LONGEST_RECORD) return nullptr;
    auto* const record = static_cast<std::uint8_t*>(std::malloc(static_cast<std::size_t>(total)));
    if (!record) return nullptr;
    *size = static_cast<std::uint32_t>(total);
    *error = HLX_DONE;
    hlx_storeBig32(record, *size << 16 | kVersion << 8 | static_cast<std::uint32_t>(type));
    if (type == 0) return record;

    const std::uint32_t numbers[] = {value1, lengthA, lengthB, value2, lengthC, value3, count};
    std::uint8_t* to = record + kBareSize;
    for (const std::uint32_t number : numbers) {
        hlx_storeBig32(to, number);
        to += kIntSize;
    }
    for (std::uint32_t i = 0; i < count; ++i, to += kIntSize) hlx_storeBig32(to, ints[i]);
    to = StoreBlob(to, blobA, lengthA);
    to = StoreBlob(to, blobB, lengthB);
    to = StoreBlob(to, blobC, lengthC);
    std::memset(to, 0, static_cast<std::size_t>(record + total - to));
    return record;
}

HlxResult hlx_decodeRecord(const std::uint8_t* record, std::uint32_t size, std::uint32_t* type,
                           std::uint32_t* value1, char** blobA, char** blobB, std::uint32_t* value2,
                           char** blobC, std::uint32_t* value3, std::int32_t* intCount,
                           std::uint32_t** ints) {
    if (!record || !type || !value1 || !value2 || !value3 || !intCount) return HLX_REFUSED;
    *type = 0;
    if (size < kBareSize) return HLX_REFUSED;
    const std::uint32_t header = hlx_loadBig32(record);
    if (header >> 16 != size || (header >> 8 & 0xFF) != kVersion) return HLX_REFUSED;
    *type = header & 0xFF;
    *blobA = *blobB = *blobC = nullptr;
    *ints = nullptr;
    if (*type == 0) return HLX_DONE;
    if (size < kFixedSize) return HLX_REFUSED;

    *value1 = hlx_loadBig32(record + 4);
    const std::uint32_t lengthA = hlx_loadBig32(record + 8);
    const std::uint32_t lengthB = hlx_loadBig32(record + 12);
    *value2 = hlx_loadBig32(record + 16);
    const std::uint32_t lengthC = hlx_loadBig32(record + 20);
    *value3 = hlx_loadBig32(record + 24);
    const std::uint32_t count = hlx_loadBig32(record + 28);
    *intCount = static_cast<std::int32_t>(count);

    // In 64 bits, so that no sum wraps; a negative count of integers is far too large a one.
    const std::uint64_t startA = kFixedSize + std::uint64_t{count} * kIntSize;
    const std::uint64_t startB = startA + Stride(lengthA);
    const std::uint64_t startC = startB + Stride(lengthB);
    if (startC + lengthC > size) return HLX_REFUSED;

    HlxBlock<std::uint32_t> intsCopy = CopyInts(record + kFixedSize, count);
    HlxBlock<char> copyA = CopyBlob(record + startA, lengthA);
    HlxBlock<char> copyB = CopyBlob(record + startB, lengthB);
    HlxBlock<char> copyC = CopyBlob(record + startC, lengthC);
    if ((count && !intsCopy) || (lengthA && !copyA) || (lengthB && !copyB) || (lengthC && !copyC))
        return HLX_REFUSED;
    *ints = intsCopy.release();
    *blobA = copyA.release();
    *blobB = copyB.release();
    *blobC = copyC.release();
    return HLX_DONE;
}
