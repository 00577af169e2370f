#include "simulator/faults.h"

#include <algorithm>
#include <mutex>
#include <stdexcept>
#include <utility>

#include "core/fault_point.h"

namespace simulator {
namespace {

struct Fault {
    std::string call;
    std::int64_t detail;
    int skip;
    int left;
    std::uint32_t error;
    std::function<void()> action;  // instead of failing
    bool used = false;
};

std::mutex g_mutex;
std::vector<Fault> g_faults;
constinit FaultPoint* g_firstPoint = nullptr;

template <class Visit>
void ForEachPoint(Visit visit) {
    for (FaultPoint* point = g_firstPoint; point; point = point->next) visit(*point);
}

// Throws if a fault with these arguments could never take effect.
void Check(std::string_view call, std::int64_t detail) {
    bool isKnown = false;
    bool hasDetail = false;
    ForEachPoint([&](const FaultPoint& point) {
        isKnown |= point.call == call;
        hasDetail |= point.call == call && *point.detail;
    });
    const std::string name(call);
    if (!isKnown) throw std::invalid_argument("no call of this program can fail as " + name);
    if (detail != kAnyDetail && !hasDetail)
        throw std::invalid_argument(name + " has no detail to which a fault could be restricted");
}

void Inject(Fault fault) {
    Check(fault.call, fault.detail);
    const std::lock_guard guard(g_mutex);
    g_faults.push_back(std::move(fault));
    FaultPoint::injected = static_cast<int>(g_faults.size());
}

}  // namespace

bool FaultPoint::Register(FaultPoint& point) {
    point.next = g_firstPoint;
    g_firstPoint = &point;
    return true;
}

std::optional<std::uint32_t> FaultPoint::TakeInjected(std::int64_t value) const {
    std::unique_lock guard(g_mutex);
    for (auto fault = g_faults.begin(); fault != g_faults.end(); ++fault) {
        if (fault->call != call) continue;
        if (fault->detail != kAnyDetail && fault->detail != value) continue;
        if (fault->skip > 0) {
            --fault->skip;
            return std::nullopt;
        }
        const std::uint32_t error = fault->error;
        const std::function<void()> action = std::move(fault->action);
        fault->used = true;
        if (fault->left != kEveryCall && --fault->left == 0) g_faults.erase(fault);
        injected = static_cast<int>(g_faults.size());
        if (!action) return error;
        guard.unlock();
        action();
        break;
    }
    return std::nullopt;
}

void FailNext(std::string_view call, int count, std::uint32_t error, std::int64_t detail,
              int skip) {
    Inject({std::string(call), detail, skip, count, error, nullptr});
}

void BeforeNext(std::string_view call, std::function<void()> action, std::int64_t detail,
                int skip) {
    Inject({std::string(call), detail, skip, 1, 0, std::move(action)});
}

std::string ClearFaults() {
    const std::lock_guard guard(g_mutex);
    std::string unused;
    for (const Fault& fault : g_faults)
        if (!fault.used || fault.left != kEveryCall)
            unused += (unused.empty() ? "" : " ") + fault.call;
    g_faults.clear();
    FaultPoint::injected = 0;
    return unused;
}

std::vector<FaultableCall> FaultableCalls() {
    std::vector<FaultableCall> calls;
    ForEachPoint([&](const FaultPoint& point) {
        calls.push_back({point.call, point.detail, point.calls});
    });
    std::sort(calls.begin(), calls.end(),
              [](const auto& left, const auto& right) { return left.name < right.name; });
    return calls;
}

void ResetCallCounts() {
    ForEachPoint([](FaultPoint& point) { point.calls = 0; });
}

}  // namespace simulator
