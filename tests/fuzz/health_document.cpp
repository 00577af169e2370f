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
    char* raw = nullptr;
    char* message = nullptr;
    char* url = nullptr;
    std::uint32_t count = 0;
    std::uint32_t* addresses = nullptr;
    const HlxResult result =
        hlx_parseHealthResult(document.c_str(), &flags[0], &flags[1], &flags[2], &flags[3], &raw,
                              &message, &flags[4], &url, &flags[5], &count, &addresses);
    if (result != HLX_DONE && (raw || message || url || addresses)) std::abort();
    if (flags[2] > HLX_HEALTH_HIGH || count % 2) std::abort();
    if (raw && !std::strstr(document.c_str(), raw)) std::abort();
    for (std::uint32_t i = 0; i < count; ++i)
        if (addresses[i] == 1) flags[0] = 1;  // reads each slot
    for (void* block : {static_cast<void*>(raw), static_cast<void*>(message),
                        static_cast<void*>(url), static_cast<void*>(addresses)})
        if (block) hlxfree(block);
    if (g_mf_sem != 0) std::abort();
    return 0;
}
