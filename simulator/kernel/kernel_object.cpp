#include "kernel/kernel_object.h"

#include <mutex>
#include <unordered_map>
#include <utility>

#include "core/last_error.h"

namespace win32 {
namespace {

struct HandleTable {
    std::mutex mutex;
    std::unordered_map<HANDLE, std::shared_ptr<KernelObject>> objects;
    ULONG_PTR last = 0;
};

// Never destroyed: other threads may close handles while the process ends.
HandleTable& Table() {
    static HandleTable& table = *new HandleTable;
    return table;
}

}  // namespace

HANDLE NewHandle(std::shared_ptr<KernelObject> object) {
    HandleTable& table = Table();
    const std::lock_guard guard(table.mutex);
    table.last += 4;
    const auto handle = reinterpret_cast<HANDLE>(table.last);
    table.objects.emplace(handle, std::move(object));
    return handle;
}

std::shared_ptr<KernelObject> ObjectOf(HANDLE handle) {
    HandleTable& table = Table();
    const std::lock_guard guard(table.mutex);
    const auto place = table.objects.find(handle);
    return place == table.objects.end() ? nullptr : place->second;
}

std::shared_ptr<KernelObject> TakeHandle(HANDLE handle) {
    HandleTable& table = Table();
    const std::lock_guard guard(table.mutex);
    auto node = table.objects.extract(handle);
    return node ? std::move(node.mapped()) : nullptr;
}

std::map<std::string, std::size_t> OpenHandles() {
    HandleTable& table = Table();
    const std::lock_guard guard(table.mutex);
    std::map<std::string, std::size_t> counts;
    for (const auto& [handle, object] : table.objects) ++counts[object->Kind()];
    return counts;
}

}  // namespace win32

BOOL CloseHandle(HANDLE handle) {
    if (win32::MustFail<"CloseHandle">()) return FALSE;
    return win32::TakeHandle(handle) ? TRUE : win32::Fail(ERROR_INVALID_HANDLE, FALSE);
}
