#include "simulator/allocations.h"

#include <unwind.h>

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <new>

// The ranges that the linker script of the test program defines.
extern "C" const char applet_code[], applet_code_end[], simulator_code[], simulator_code_end[];

// The system's functions are replaced for the whole process, the parser library included. A
// sanitizer replaces them before the program starts; there the linker redirects the calls of the
// program's own code.
#ifdef VH_SANITIZED
#define SYSTEM(function) __real_##function
#define REPLACED(function) __wrap_##function
#else
#define SYSTEM(function) __libc_##function
#define REPLACED(function) function
#endif
extern "C" void* SYSTEM(malloc)(std::size_t size);
extern "C" void* SYSTEM(calloc)(std::size_t count, std::size_t size);

namespace {

std::atomic<int> g_counted{0};
std::atomic<int> g_failing{0};
std::atomic<bool> g_counts{false};
thread_local bool t_isLooking = false;  // the search may allocate

bool IsWithin(std::uintptr_t code, const char* begin, const char* end) {
    return code >= reinterpret_cast<std::uintptr_t>(begin) &&
           code < reinterpret_cast<std::uintptr_t>(end);
}

_Unwind_Reason_Code LookAtFrame(_Unwind_Context* frame, void* isApplets) {
    const std::uintptr_t code = _Unwind_GetIP(frame);
    *static_cast<bool*>(isApplets) = IsWithin(code, applet_code, applet_code_end);
    return *static_cast<bool*>(isApplets) || IsWithin(code, simulator_code, simulator_code_end)
               ? _URC_END_OF_STACK
               : _URC_NO_REASON;
}

bool MustFail() {
    if (!g_counts || t_isLooking) return false;
    t_isLooking = true;
    bool isApplets = false;
    _Unwind_Backtrace(LookAtFrame, &isApplets);
    t_isLooking = false;
    return isApplets && ++g_counted == g_failing;
}

}  // namespace

void CountAllocations(int failing) {
    g_counted = 0;
    g_failing = failing;
    g_counts = true;
}

int AllocationsCounted() { return g_counted; }

extern "C" void* REPLACED(malloc)(std::size_t size) {
    return MustFail() ? nullptr : SYSTEM(malloc)(size);
}
extern "C" void* REPLACED(calloc)(std::size_t count, std::size_t size) {
    return MustFail() ? nullptr : SYSTEM(calloc)(count, size);
}

void* operator new(std::size_t size) {
    if (void* const block = std::malloc(size)) return block;
    throw std::bad_alloc();
}
void* operator new[](std::size_t size) { return operator new(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept try {
    return operator new(size);
} catch (const std::bad_alloc&) {
    return nullptr;
}
void* operator new[](std::size_t size, const std::nothrow_t& nothrow) noexcept {
    return operator new(size, nothrow);
}
void operator delete(void* block) noexcept { std::free(block); }
void operator delete[](void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }
void operator delete[](void* block, std::size_t) noexcept { std::free(block); }
