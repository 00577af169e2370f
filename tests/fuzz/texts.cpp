// Feeds texts with numbers in them, a version and the log's environment, against a plain reading of
// each.
#include <array>
#include <cerrno>

#include "harness.h"
#include "hlxLog.h"
#include "updates/NewerVersion.h"

namespace {

// The number at the start of the text in 32 bits: a sign wraps it, a larger one is the largest.
std::uint32_t Number(const std::string& text, int base) {
    errno = 0;
    const std::uint64_t number = std::strtoull(text.c_str(), nullptr, base);
    const std::size_t start = text.find_first_not_of(" \t\n\v\f\r");
    const bool negative = start != text.npos && text[start] == '-';
    const bool fits = errno == 0 && (negative ? -number : number) <= UINT32_MAX;
    return fits ? static_cast<std::uint32_t>(number) : UINT32_MAX;
}

bool IsNewer(const std::string& text) {
    std::array<std::uint32_t, 4> version{};
    std::size_t at = 0;
    for (std::uint32_t& number : version) {
        const std::size_t start = text.find_first_not_of(".-", at);
        if (start == std::string::npos) return false;
        at = std::min(text.find_first_of(".-", start), text.size());
        number = Number(text.substr(start, at - start), 10);
    }
    return version > std::array<std::uint32_t, 4>{4, 2, 7, 1};
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string text(reinterpret_cast<const char*>(data), size);
    text.resize(std::strlen(text.c_str()));
    bool right = IsNewerVersion(text.c_str()) == IsNewer(text);
    for (const char* name : {"HLX_DAEMON_TRACE_PATH", "F_TRACE_LEVEL", "F_TRACE_MASK"})
        setenv(name, text.c_str(), 1);
    std::int32_t level = 5;
    std::uint32_t mask = 9;
    std::string path = "before";
    hlx_logReadEnv("", nullptr, nullptr, path);
    hlx_logReadEnv("F", &level, &mask, path);
    const std::uint32_t number = Number(text, 0);
    right &= path == (text.empty() ? "before" : text);
    right &= level == (text.empty() ? 5 : static_cast<int>(std::min(number, 7u)));
    right &= mask == (text.empty() ? 9 : number);
    if (!right) std::abort();
    return 0;
}
