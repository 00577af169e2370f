#include "updates/NewerVersion.h"

#include <windows.h>
#include <mbstring.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "hlxOwned.h"
#include "updates/VersionInfo.h"

namespace {

// Thrown and caught in this file.
constexpr std::uint32_t kTooFewNumbers = 11;
constexpr std::uint32_t kUnreadable = 13;

// From the most significant number to the least.
using Version = std::array<std::uint32_t, 4>;

// The digits at the start of the token; a number that is too large becomes the largest one.
std::uint32_t ToNumber(const char* token) {
    constexpr unsigned long kLargest = UINT32_MAX;
    return static_cast<std::uint32_t>(std::min(strtoul(token, nullptr, 10), kLargest));
}

Version Parse(const char* text) {
    const HlxBlock<char> copy(_strdup(text));
    if (!copy || !*copy) throw kUnreadable;
    Version version{};
    auto* rest = reinterpret_cast<unsigned char*>(copy.get());
    for (std::uint32_t& number : version) {
        const unsigned char* token = _mbstok(rest, reinterpret_cast<const unsigned char*>(".-"));
        if (!token) throw kTooFewNumbers;
        number = ToNumber(reinterpret_cast<const char*>(token));
        rest = nullptr;
    }
    return version;
}

Version OwnProductVersion() {
    CVersionInfo own;
    if (!own.LoadModule(nullptr)) throw kUnreadable;
    const DWORD high = own.GetProductVersionMS();
    const DWORD low = own.GetProductVersionLS();
    return {HIWORD(high), LOWORD(high), HIWORD(low), LOWORD(low)};
}

}  // namespace

bool IsNewerVersion(const char* version) {
    try {
        const Version offered = Parse(version);
        return offered > OwnProductVersion();
    } catch (const std::uint32_t&) {
        return false;
    }
}
