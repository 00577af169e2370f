// A guarded block got and released, against malloc and free with the same guards and counts written
// by hand.

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "comparison.h"
#include "hlxMalloc.h"

namespace {

std::atomic<std::int32_t> g_outstanding;
std::atomic<std::uint32_t> g_allocations, g_releases;

constexpr std::uint32_t kPreZone = 0x1300FF13;
constexpr std::uint32_t kPostZone = 0xDEADBEEF;

[[gnu::noinline]] char* Allocate(std::uint32_t size) {
    const std::uint32_t padded = (size + 3) / 4 * 4;
    char* const base = static_cast<char*>(std::malloc(padded + 12));
    if (!base) return nullptr;
    ++g_allocations;
    ++g_outstanding;
    const std::uint32_t head[] = {kPreZone, padded};
    std::memcpy(base, head, sizeof head);
    std::memcpy(base + 8 + padded, &kPostZone, sizeof kPostZone);
    return base + 8;
}

[[gnu::noinline]] void Release(char* user) {
    std::uint32_t head[2], tail;
    std::memcpy(head, user - 8, sizeof head);
    if (head[0] != kPreZone) return;
    std::memcpy(&tail, user + head[1], sizeof tail);
    if (tail != kPostZone) return;
    std::free(user - 8);
    ++g_releases;
    --g_outstanding;
}

}  // namespace

void RegisterAllocator() {
    for (const std::uint32_t size : {16u, 512u, 65'536u}) {
        const std::string work = "guarded block of " + std::to_string(size) + " bytes";
        Compare(work, "ours", 0, Repeat([size] {
                    void* const block = hlxmalloc(size);
                    benchmark::DoNotOptimize(block);
                    hlxfree(block);
                }));
        Compare(work, "malloc with guards", size < 65'536 ? 1.1 : 1.0, Repeat([size] {
                    char* const block = Allocate(size);
                    benchmark::DoNotOptimize(block);
                    Release(block);
                }));
    }
}
