// Fuzzes the health reader: no document crashes it, and its results are complete.

#include "../unit/health_reading.h"
#include "harness.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string document(reinterpret_cast<const char*>(data), size);
    {
        const HealthReading read(document.c_str());
        if (read.result != HLX_DONE && (read.raw || read.message || read.url || read.ranges))
            std::abort();
        if (read.state > HLX_HEALTH_HIGH && read.state != read.kUntouched) std::abort();
        if (read.raw && !std::strstr(document.c_str(), read.raw)) std::abort();
        if (read.ranges && read.restrictCount % 2) std::abort();
        if (read.ranges) std::vector(read.ranges, read.ranges + read.restrictCount);
    }
    if (g_mf_sem != 0) std::abort();
    return 0;
}
