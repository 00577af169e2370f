#include "machine/faults.h"

#include <atomic>
#include <mutex>
#include <string>
#include <vector>

namespace machine {
namespace {

struct Fault {
    std::string operation;
    std::int64_t detail;
    int left;
    std::uint32_t error;
};

std::mutex g_mutex;
std::vector<Fault> g_faults;
std::atomic<int> g_ordered{0};

}  // namespace

void FailNext(std::string_view operation, int count, std::uint32_t error, std::int64_t detail) {
    const std::lock_guard guard(g_mutex);
    g_faults.push_back({std::string(operation), detail, count, error});
    g_ordered = static_cast<int>(g_faults.size());
}

void ClearFaults() {
    const std::lock_guard guard(g_mutex);
    g_faults.clear();
    g_ordered = 0;
}

std::optional<std::uint32_t> Strike(std::string_view operation, std::int64_t detail) {
    if (g_ordered.load(std::memory_order_relaxed) == 0) return std::nullopt;
    const std::lock_guard guard(g_mutex);
    for (auto fault = g_faults.begin(); fault != g_faults.end(); ++fault) {
        if (fault->operation != operation) continue;
        if (fault->detail != kAnyDetail && fault->detail != detail) continue;
        const std::uint32_t error = fault->error;
        if (fault->left != kEveryCall && --fault->left == 0) g_faults.erase(fault);
        g_ordered = static_cast<int>(g_faults.size());
        return error;
    }
    return std::nullopt;
}

}  // namespace machine
