// Feeds the reader of the cache file: each field ends within its buffer, whatever its size.

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

#include <unistd.h>

#include "hlxSwCache.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 4) return 0;
    static const std::string path = "/dev/shm/fuzz-swcache-" + std::to_string(getpid());
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(data + 4), static_cast<std::streamsize>(size - 4));
    std::vector<char> fields[4];
    std::uint32_t sizes[4];
    for (int i = 0; i < 4; ++i) {
        sizes[i] = data[i] % 32u;
        fields[i].assign(sizes[i] + 1, 'x');  // one more, so that there is a buffer for size 0
    }
    const HlxResult result =
        hlx_getSwCache(path.c_str(), fields[0].data(), sizes[0], fields[1].data(), sizes[1],
                       fields[2].data(), sizes[2], fields[3].data(), sizes[3]);
    for (int i = 0; i < 4; ++i) {
        if (fields[i][sizes[i]] != 'x') std::abort();
        if (result == HLX_DONE && !std::memchr(fields[i].data(), 0, sizes[i])) std::abort();
    }
    unlink(path.c_str());
    return 0;
}
