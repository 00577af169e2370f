// Events, and the waits for objects of all kinds.
#include <vector>

#include "src/event.h"
#include "src/last_error.h"

namespace {

std::optional<machine::Ticks> DeadlineAfter(DWORD milliseconds) {
    if (milliseconds == INFINITE) return std::nullopt;
    return machine::Clock::Uptime() + milliseconds * machine::kTicksPerMillisecond;
}

}  // namespace

HANDLE CreateEventA(LPSECURITY_ATTRIBUTES, BOOL manualReset, BOOL signalled, LPCSTR name) {
    if (win32::Refused("CreateEventA")) return nullptr;
    if (name) {
        win32::NotImplemented("an event with a name");
        return nullptr;
    }
    SetLastError(ERROR_SUCCESS);
    return win32::NewHandle(std::make_shared<win32::Event>(manualReset != 0, signalled != 0));
}

BOOL SetEvent(HANDLE handle) {
    if (win32::Refused("SetEvent")) return FALSE;
    const auto event = win32::ObjectOf<win32::Event>(handle);
    if (!event) return FALSE;
    const auto lock = machine::LockWorld();
    event->Set();
    return TRUE;
}

BOOL ResetEvent(HANDLE handle) {
    if (win32::Refused("ResetEvent")) return FALSE;
    const auto event = win32::ObjectOf<win32::Event>(handle);
    if (!event) return FALSE;
    const auto lock = machine::LockWorld();
    event->signalled = false;
    return TRUE;
}

DWORD WaitForMultipleObjects(DWORD count, const HANDLE* handles, BOOL all, DWORD milliseconds) {
    if (win32::Refused("WaitForMultipleObjects")) return WAIT_FAILED;
    if (count == 0 || count > MAXIMUM_WAIT_OBJECTS)
        return win32::Fail(ERROR_INVALID_PARAMETER, WAIT_FAILED);
    if (all && count > 1) {
        win32::NotImplemented("a wait for all of several objects");
        return WAIT_FAILED;
    }
    std::vector<std::shared_ptr<win32::Waitable>> objects;
    for (DWORD i = 0; i < count; ++i) {
        objects.push_back(win32::ObjectOf<win32::Waitable>(handles[i]));
        if (!objects.back()) return WAIT_FAILED;
    }
    const auto firstSignalled = [&] {
        DWORD i = 0;
        while (i < count && !objects[i]->Signalled()) ++i;
        return i;
    };
    auto lock = machine::LockWorld();
    const bool met = machine::WaitFor(
        lock, [&] { return firstSignalled() < count; }, DeadlineAfter(milliseconds));
    if (!met) return WAIT_TIMEOUT;
    const DWORD first = firstSignalled();
    objects[first]->Taken();
    return WAIT_OBJECT_0 + first;
}

DWORD WaitForSingleObject(HANDLE handle, DWORD milliseconds) {
    if (win32::Refused("WaitForSingleObject")) return WAIT_FAILED;
    return WaitForMultipleObjects(1, &handle, FALSE, milliseconds);
}

void Sleep(DWORD milliseconds) {
    auto lock = machine::LockWorld();
    machine::WaitFor(
        lock, [] { return false; }, DeadlineAfter(milliseconds));
}
