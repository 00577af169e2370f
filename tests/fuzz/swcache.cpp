// Fuzzes the reader of the cache file: each field ends within its buffer, whatever its size.

#include "harness.h"
#include "hlxSwCache.h"

void Fuzz(Bytes input) {
    if (input.size() < 4) return;
    const std::string path = ScratchPath();
    WriteBytes(path, input.subspan(4));
    std::uint32_t sizes[4];
    std::string fields[4];
    for (std::size_t i = 0; i < 4; ++i) {
        sizes[i] = input[i] % 32u;
        fields[i].assign(sizes[i] + 1, 'x');  // one more, so that there is a buffer for size 0
    }
    const std::uint32_t result =
        hlx_getSwCache(path.c_str(), fields[0].data(), sizes[0], fields[1].data(), sizes[1],
                       fields[2].data(), sizes[2], fields[3].data(), sizes[3]);
    for (const std::string& field : fields)
        Require(field.back() == 'x' && (result != HLX_DONE || field.find('\0') != field.npos));
    unlink(path.c_str());
}
