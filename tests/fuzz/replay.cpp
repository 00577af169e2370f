// Replaces the fuzzer in the ordinary tests: passes each seed to the harness complete, cut at every
// position, and with each byte inverted.

#include "harness.h"

int main(int count, char** paths) {
    Require(count > 1);
    for (const char* path : std::span(paths + 1, paths + count)) {
        std::ifstream file(path, std::ios::binary);
        std::vector<std::uint8_t> seed(std::istreambuf_iterator<char>(file), {});
        Require(!seed.empty());
        for (std::size_t at = 0; at < seed.size(); ++at) {
            Fuzz(Bytes(seed).first(at));
            seed[at] ^= 0xFF;
            Fuzz(seed);
            seed[at] ^= 0xFF;
        }
        Fuzz(seed);
    }
}
