// Feeds the health reader: no document may crash it, and what it hands out is complete.

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "hlxHealthResult.h"
#include "hlxMalloc.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string document(reinterpret_cast<const char*>(data), size);
    std::uint32_t flags[6] = {};
    char* texts[3] = {};
    std::uint32_t count = 0;
    std::uint32_t* addresses = nullptr;
    const HlxResult result = hlx_parseHealthResult(
        document.c_str(), &flags[0], &flags[1], &flags[2], &flags[3], &texts[0], &texts[1],
        &flags[4], &texts[2], &flags[5], &count, &addresses);
    if (result != HLX_DONE && (texts[0] || texts[1] || texts[2] || addresses)) std::abort();
    if (flags[2] > HLX_HEALTH_HIGH || count % 2) std::abort();
    if (texts[0] && !std::strstr(document.c_str(), texts[0])) std::abort();
    for (std::uint32_t i = 0; i < count; ++i)
        if (addresses[i] == 1) flags[0] = 1;  // reads each slot
    for (char* text : texts)
        if (text) hlxfree(text);
    if (addresses) hlxfree(addresses);
    if (g_mf_sem != 0) std::abort();
    return 0;
}
