// Takes the fuzzer's place in the ordinary tests: hands each seed to the harness whole, cut at
// every place, and with each of its bytes turned round.
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

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
