// Feeds the reader of version resources: a file of any of the three kinds, whatever its bytes say.

#include <cstdlib>

#include "version_queries.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (!VersionQueriesStayWithin(std::as_bytes(std::span(data, size)))) std::abort();
    return 0;
}
