// The messages in which the watchers tell the controller of a change.
#pragma once

#include <windows.h>

#include <atomic>

// A window message known by name. Its number is fetched at the first use, once in the process.
class CRegisteredMessage {
public:
    constexpr explicit CRegisteredMessage(const char* name) : m_name(name) {}

    UINT Number();

private:
    const char* const m_name;
    std::atomic<UINT> m_number{0};
};

// With the contents of a file: wParam is their size in bytes, lParam a terminated buffer from array
// new that belongs to the receiver. The controller posts the second to itself with 0 and 0.
extern CRegisteredMessage g_msgHealthResults;
extern CRegisteredMessage g_msgSWUpdates;

// With a registry key: wParam is the root key, lParam the path below it, which stays the watcher's.
extern CRegisteredMessage g_msgQueuedInstalls;
extern CRegisteredMessage g_msgDownloadResults;
