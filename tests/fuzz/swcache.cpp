// Fuzzes the reader of the cache file: each field ends within its buffer, whatever its size.

#include "hlxSwCache.h"
#include "harness.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 4) return 0;
    const std::string path = ScratchPath();
    WriteBytes(path, {data + 4, size - 4});
    std::vector<char> fields[4];
    std::uint32_t sizes[4];
    for (int i = 0; i < 4; ++i) {
        sizes[i] = data[i] % 32u;
        fields[i].assign(sizes[i] + 1, 'x');  // one more, so that there is a buffer for size 0
    }
    const std::uint32_t result =
        hlx_getSwCache(path.c_str(), fields[0].data(), sizes[0], fields[1].data(), sizes[1],
                       fields[2].data(), sizes[2], fields[3].data(), sizes[3]);
    for (int i = 0; i < 4; ++i) {
        if (fields[i][sizes[i]] != 'x') std::abort();
        if (result == HLX_DONE && !std::memchr(fields[i].data(), 0, sizes[i])) std::abort();
    }
    unlink(path.c_str());
    return 0;
}
