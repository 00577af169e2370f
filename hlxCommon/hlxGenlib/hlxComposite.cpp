#include "hlxComposite.h"

#include <cstdlib>
#include <cstring>

#include "hlxBigEndian.h"

namespace {

constexpr std::uint32_t kTailSize = 5;  // the zero bytes behind blob 2 and blob 3

struct Header {
    std::uint32_t length1, length2, offset2, length3, offset3;
};

Header LoadHeader(const std::uint8_t* message) {
    return {hlx_loadBig32(message), hlx_loadBig32(message + 4), hlx_loadBig32(message + 8),
            hlx_loadBig32(message + 12), hlx_loadBig32(message + 16)};
}

void StoreHeader(std::uint8_t* message, const Header& header) {
    hlx_storeBig32(message, header.length1);
    hlx_storeBig32(message + 4, header.length2);
    hlx_storeBig32(message + 8, header.offset2);
    hlx_storeBig32(message + 12, header.length3);
    hlx_storeBig32(message + 16, header.offset3);
}

}  // namespace

std::uint8_t* hlx_buildComposite(std::uint32_t length1, const std::uint8_t* blob1,
                                 std::uint32_t length2, const std::uint8_t* blob2,
                                 std::uint32_t length3, const std::uint8_t* blob3,
                                 std::uint32_t* size, std::int32_t* error) {
    if (!error) return nullptr;
    *error = HLX_REFUSED;
    if (!length1 || !blob1 || !length2 || !blob2 || !size) return nullptr;
    const std::uint64_t total =
        std::uint64_t{HLX_COMPOSITE_HEADER_SIZE} + length1 + length2 + length3 + kTailSize;
    if (total > UINT32_MAX) return nullptr;
    auto* const message =
        static_cast<std::uint8_t*>(std::calloc(1, static_cast<std::size_t>(total)));
    if (!message) return nullptr;

    std::uint8_t* const data = message + HLX_COMPOSITE_HEADER_SIZE;
    Header header{length1, length2, length1, 0, 0};
    std::memcpy(data, blob1, length1);
    std::memcpy(data + header.offset2, blob2, length2);
    if (length3 && blob3) {
        header.length3 = length3;
        header.offset3 = length1 + length2 + 1;
        std::memcpy(data + header.offset3, blob3, length3);
    }
    StoreHeader(message, header);
    *size = static_cast<std::uint32_t>(total);
    *error = HLX_DONE;
    return message;
}

HlxResult hlx_parseCompositeChecked(const std::uint8_t* message, std::uint32_t size,
                                    std::uint32_t* length1, const std::uint8_t** blob1,
                                    std::uint32_t* length2, const std::uint8_t** blob2,
                                    std::uint32_t* length3, const std::uint8_t** blob3) {
    if (!message || size < HLX_COMPOSITE_HEADER_SIZE) return HLX_REFUSED;
    const Header header = LoadHeader(message);
    const auto fits = [room = size - HLX_COMPOSITE_HEADER_SIZE](std::uint32_t offset,
                                                                std::uint32_t length) {
        return offset <= room && length <= room - offset;
    };
    if (!fits(0, header.length1) || !fits(header.offset2, header.length2) ||
        (header.length3 && !fits(header.offset3, header.length3)))
        return HLX_REFUSED;
    return hlx_parseComposite(message, length1, blob1, length2, blob2, length3, blob3);
}

HlxResult hlx_parseComposite(const std::uint8_t* message, std::uint32_t* length1,
                             const std::uint8_t** blob1, std::uint32_t* length2,
                             const std::uint8_t** blob2, std::uint32_t* length3,
                             const std::uint8_t** blob3) {
    if (!message || !length1 || !blob1 || !length2 || !blob2) return HLX_REFUSED;
    const Header header = LoadHeader(message);
    const std::uint8_t* const data = message + HLX_COMPOSITE_HEADER_SIZE;
    *length1 = header.length1;
    *blob1 = data;
    *length2 = header.length2;
    *blob2 = data + header.offset2;
    if (length3) *length3 = header.length3;
    if (blob3) *blob3 = header.length3 ? data + header.offset3 : nullptr;
    return HLX_DONE;
}
