// The harness as a fuzzer of clang calls it.

#include "harness.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Fuzz({data, size});
    return 0;
}
