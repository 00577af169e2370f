// The host's log settings in the environment.

#include <cstdint>
#include <cstdlib>
#include <new>

#include "hlxLog.h"

namespace {

// The variable's text, or null if it is unset or empty.
const char* Variable(const std::string& prefix, const char* name) {
    const char* const text = std::getenv((prefix + name).c_str());
    return text && *text ? text : nullptr;
}

// As strtoul reads a number into 32 bits, on every platform: a sign wraps it, and UINT32_MAX is
// used for what is larger.
std::uint32_t Number(const char* text) {
    constexpr long long kLargest = UINT32_MAX;
    const long long number = std::strtoll(text, nullptr, 0);
    const bool fits = number >= -kLargest && number <= kLargest;
    return fits ? static_cast<std::uint32_t>(number) : UINT32_MAX;
}

void ReadEnv(const std::string& prefix, std::int32_t* level, std::uint32_t* mask,
             std::string& path) {
    if (const char* text = Variable(prefix, "_TRACE_PATH")) path = text;
    if (const char* text = level ? Variable(prefix, "_TRACE_LEVEL") : nullptr)
        *level = hlx_logClampLevel(static_cast<std::int32_t>(Number(text)));
    if (const char* text = mask ? Variable(prefix, "_TRACE_MASK") : nullptr) *mask = Number(text);
}

}  // namespace

void hlx_logReadEnv(const char* prefix, std::int32_t* level, std::uint32_t* mask,
                    std::string& path) {
    try {
        ReadEnv(prefix && *prefix ? prefix : "HLX_DAEMON", level, mask, path);
    } catch (const std::bad_alloc&) {
        // A variable that cannot be read does not change the value, as one that is not set.
    }
}
