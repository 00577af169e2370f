#include "hlxMalloc.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "hlxLog.h"

std::atomic<std::int32_t> g_mf_sem;
std::atomic<std::uint32_t> g_mf_total_malloc;
std::atomic<std::uint32_t> g_mf_total_free;
std::atomic<std::uint32_t> g_mf_failed_malloc;
std::atomic<std::uint32_t> g_mf_zero_malloc;
std::atomic<std::uint32_t> g_mf_zero_free;

namespace {

// A block: the pre zone, the padded size, the user area of that size, the post zone.
constexpr std::uint32_t kPreZone = 0x1300FF13;
constexpr std::uint32_t kPostZone = 0xDEADBEEF;
constexpr std::uint32_t kUserOffset = 8;
constexpr std::uint32_t kOverhead = 12;

void StoreWord(void* to, std::uint32_t word) { std::memcpy(to, &word, sizeof word); }

std::uint32_t LoadWord(const void* from) {
    std::uint32_t word;
    std::memcpy(&word, from, sizeof word);
    return word;
}

unsigned long Address(const void* pointer) {
    return static_cast<unsigned long>(reinterpret_cast<std::uintptr_t>(pointer));
}

// Decrements the number of allocated blocks; false if it is 0.
bool CountRelease() {
    std::int32_t outstanding = g_mf_sem;
    while (outstanding > 0)
        if (g_mf_sem.compare_exchange_weak(outstanding, outstanding - 1)) return true;
    return false;
}

void ReportDamage(const char* zone, const char* user, std::uint32_t expected, std::uint32_t found) {
    hlx_log(hlx_logGetDefault(), 1, HLX_AREA_INTEGRITY,
            "hlxfree %s zone doesn't match for 0x%lx free_p = 0x%lx.  Exptected 0x%x, got 0x%lx",
            zone, Address(user), Address(user - kUserOffset), expected,
            static_cast<unsigned long>(found));
}

}  // namespace

// The texts of the log lines in this file, "Exptected" and the cut pointer of "hlxfree(0x%x)", are
// part of the interface, do not correct.

void* hlxmalloc(std::uint32_t size) {
    hlx_log(hlx_logGetDefault(), 4, HLX_AREA_ALLOCATION_TRACE, "hlxmalloc(%d) enter",
            static_cast<int>(size));
    if (size == 0) {
        ++g_mf_zero_malloc;
        return nullptr;
    }
    const std::uint64_t padded = (std::uint64_t{size} + 3) & ~std::uint64_t{3};
    const std::uint64_t total = padded + kOverhead;
    char* const base = total > UINT32_MAX
                           ? nullptr
                           : static_cast<char*>(std::malloc(static_cast<std::size_t>(total)));
    hlx_log(hlx_logGetDefault(), 1, HLX_AREA_INTEGRITY, "hlxmalloc: base: 0x%lx", Address(base));
    void* user = nullptr;
    if (base) {
        ++g_mf_total_malloc;
        ++g_mf_sem;
        user = base + kUserOffset;
        StoreWord(base, kPreZone);
        StoreWord(base + 4, static_cast<std::uint32_t>(padded));
        StoreWord(base + kUserOffset + padded, kPostZone);
    } else {
        hlx_log(hlx_logGetDefault(), 1, HLX_AREA_ALLOCATION, "hlxmalloc malloc of %d bytes failed",
                static_cast<int>(total));
        ++g_mf_failed_malloc;
    }
    hlx_log(hlx_logGetDefault(), 4, HLX_AREA_ALLOCATION, "hlxmalloc returning 0x%lx",
            Address(user));
    return user;
}

void hlxfree(void* pointer) {
    hlx_log(hlx_logGetDefault(), 4, HLX_AREA_ALLOCATION_TRACE, "hlxfree(0x%x) enter",
            static_cast<unsigned>(Address(pointer)));
    if (!pointer) {
        hlx_log(hlx_logGetDefault(), 1, HLX_AREA_INTEGRITY, "hlxfree parameter is NULL");
        ++g_mf_zero_free;
        return;
    }
    char* const user = static_cast<char*>(pointer);
    char* const base = user - kUserOffset;
    if (const std::uint32_t found = LoadWord(base); found != kPreZone)
        return ReportDamage("pre", user, kPreZone, found);
    const std::uint32_t padded = LoadWord(base + 4);
    if (const std::uint32_t found = LoadWord(user + padded); found != kPostZone)
        return ReportDamage("post", user, kPostZone, found);
    if (!CountRelease())
        hlx_log(hlx_logGetDefault(), 1, HLX_AREA_INTEGRITY,
                "hlxfree called more times than malloc. ptr: 0x%lx  free_p: 0x%lx", Address(user),
                Address(base));
    std::free(base);
    ++g_mf_total_free;
    hlx_log(hlx_logGetDefault(), 4, HLX_AREA_ALLOCATION_TRACE, "hlxfree() exit");
}

char* hlxstrdup(const char* text) {
    // hlxmalloc refuses UINT32_MAX, and so every text that is too long for its argument.
    const std::size_t size = std::min<std::size_t>(std::strlen(text) + 1, UINT32_MAX);
    void* const copy = hlxmalloc(static_cast<std::uint32_t>(size));
    return copy ? static_cast<char*>(std::memcpy(copy, text, size)) : nullptr;
}

void hlxmalloc_report() {
    const std::uint32_t area = HLX_AREA_ALLOCATION;
    const long outstanding = g_mf_sem;
    const std::pair<const char*, std::uint32_t> counters[] = {
        {"g_mf_total_malloc", g_mf_total_malloc},   {"g_mf_total_free", g_mf_total_free},
        {"g_mf_failed_malloc", g_mf_failed_malloc}, {"g_mf_zero_malloc", g_mf_zero_malloc},
        {"g_mf_zero_free", g_mf_zero_free},
    };
    const long difference = static_cast<std::int32_t>(counters[0].second - counters[1].second);

    hlx_log(hlx_logGetDefault(), 3, area, "hlxmalloc_report: ");
    if (outstanding != difference)
        hlx_log(hlx_logGetDefault(), 3, area,
                "    Error in counting.  diff between allocs and frees is %ld and sem is %ld",
                difference, outstanding);
    hlx_log(hlx_logGetDefault(), 3, area, "    g_mf_sem           = %4ld", outstanding);
    for (const auto& [name, count] : counters)
        hlx_log(hlx_logGetDefault(), 3, area, "    %-18s = %4lu", name,
                static_cast<unsigned long>(count));
}
