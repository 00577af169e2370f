// The messages that the watchers post to the controller.
#pragma once

#include <windows.h>

#include <atomic>

// A registered window message. It is registered at the first use, once in the process.
class CRegisteredMessage {
public:
    constexpr explicit CRegisteredMessage(const char* name) : m_name(name) {}
    virtual ~CRegisteredMessage() = default;
    CRegisteredMessage(const CRegisteredMessage&) = delete;
    CRegisteredMessage& operator=(const CRegisteredMessage&) = delete;

    UINT Number();

private:
    const char* const m_name;
    std::atomic<UINT> m_number{0};
};

// From a file watcher: wParam is the size of the contents in bytes, lParam a terminated buffer from
// array new, which the receiver owns. The controller also posts the second message to itself, with
// both parameters 0.
extern CRegisteredMessage g_msgHealthResults;
extern CRegisteredMessage g_msgSWUpdates;

// From a registry watcher: wParam is the root key, lParam the path below it, which the watcher
// owns.
extern CRegisteredMessage g_msgQueuedInstalls;
extern CRegisteredMessage g_msgDownloadResults;
