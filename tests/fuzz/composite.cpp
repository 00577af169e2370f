// Fuzzes the checked reader of composite messages: every blob is within the message.

#include "hlxComposite.h"
#include "harness.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::uint32_t lengths[3];
    const std::uint8_t* blobs[3];
    if (hlx_parseCompositeChecked(data, static_cast<std::uint32_t>(size), &lengths[0], &blobs[0],
                                  &lengths[1], &blobs[1], &lengths[2], &blobs[2]) != HLX_DONE)
        return 0;
    for (int i = 0; i < 3; ++i)
        if (blobs[i] && (blobs[i] < data || blobs[i] + lengths[i] > data + size)) std::abort();
    return 0;
}
