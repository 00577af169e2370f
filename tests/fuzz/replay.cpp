// Replaces the fuzzer in the ordinary tests: passes each seed to the harness complete, cut at every
// position, and with each byte inverted.

#include "harness.h"

int main(int count, char** paths) {
    for (int i = 1; i < count; ++i) {
        std::ifstream file(paths[i], std::ios::binary);
        std::vector<std::uint8_t> seed(std::istreambuf_iterator<char>(file), {});
        if (seed.empty()) return 1;
        for (std::size_t at = 0; at < seed.size(); ++at) {
            LLVMFuzzerTestOneInput(seed.data(), at);
            seed[at] ^= 0xFF;
            LLVMFuzzerTestOneInput(seed.data(), seed.size());
            seed[at] ^= 0xFF;
        }
        LLVMFuzzerTestOneInput(seed.data(), seed.size());
    }
    return count > 1 ? 0 : 1;
}
