// Events, and the waits for objects of all kinds.
#include <algorithm>
#include <span>
#include <vector>

#include "kernel/event.h"
#include "core/last_error.h"

namespace {

std::optional<simulator::Ticks> DeadlineAfter(DWORD milliseconds) {
    if (milliseconds == INFINITE) return std::nullopt;
    return simulator::Clock::Uptime() + milliseconds * simulator::kTicksPerMillisecond;
}

DWORD WaitForAny(std::span<const HANDLE> handles, DWORD milliseconds) {
    std::vector<std::shared_ptr<win32::Waitable>> objects;
    for (const HANDLE handle : handles) {
        objects.push_back(win32::ObjectOf<win32::Waitable>(handle));
        if (!objects.back()) return WAIT_FAILED;
    }
    const auto firstSignalled = [&] {
        return std::find_if(objects.begin(), objects.end(),
                            [](const auto& object) { return object->Signalled(); });
    };
    auto lock = simulator::LockState();
    const bool met = simulator::WaitFor(
        lock, [&] { return firstSignalled() != objects.end(); }, DeadlineAfter(milliseconds));
    if (!met) return WAIT_TIMEOUT;
    const auto first = firstSignalled();
    (*first)->Taken();
    return WAIT_OBJECT_0 + static_cast<DWORD>(first - objects.begin());
}

}  // namespace

HANDLE CreateEventA(LPSECURITY_ATTRIBUTES, BOOL manualReset, BOOL signalled, LPCSTR name) {
    if (win32::MustFail<"CreateEventA">()) return nullptr;
    if (name) win32::NotImplemented("CreateEventA with a name");
    SetLastError(ERROR_SUCCESS);
    return win32::NewHandle(std::make_shared<win32::Event>(manualReset != 0, signalled != 0));
}

BOOL SetEvent(HANDLE handle) {
    if (win32::MustFail<"SetEvent">()) return FALSE;
    const auto event = win32::ObjectOf<win32::Event>(handle);
    if (!event) return FALSE;
    const auto lock = simulator::LockState();
    event->Set();
    return TRUE;
}

BOOL ResetEvent(HANDLE handle) {
    if (win32::MustFail<"ResetEvent">()) return FALSE;
    const auto event = win32::ObjectOf<win32::Event>(handle);
    if (!event) return FALSE;
    const auto lock = simulator::LockState();
    event->signalled = false;
    return TRUE;
}

DWORD WaitForMultipleObjects(DWORD count, const HANDLE* handles, BOOL all, DWORD milliseconds) {
    if (win32::MustFail<"WaitForMultipleObjects">()) return WAIT_FAILED;
    if (count == 0 || count > MAXIMUM_WAIT_OBJECTS)
        return win32::Fail(ERROR_INVALID_PARAMETER, WAIT_FAILED);
    if (all && count > 1)
        win32::NotImplemented("WaitForMultipleObjects for all of several objects");
    return WaitForAny({handles, count}, milliseconds);
}

DWORD WaitForSingleObject(HANDLE handle, DWORD milliseconds) {
    if (win32::MustFail<"WaitForSingleObject">()) return WAIT_FAILED;
    return WaitForAny({&handle, 1}, milliseconds);
}

void Sleep(DWORD milliseconds) {
    auto lock = simulator::LockState();
    simulator::WaitFor(
        lock, [] { return false; }, DeadlineAfter(milliseconds));
}
