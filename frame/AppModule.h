// The module of the program: its instance handle, its process-wide lock and its message loops.
#pragma once

#include <windows.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "frame/CriticalSection.h"
#include "frame/MessageLoop.h"

class CAppModule {
public:
    CAppModule() = default;
    virtual ~CAppModule() = default;
    CAppModule(const CAppModule&) = delete;
    CAppModule& operator=(const CAppModule&) = delete;

    void Init(HINSTANCE instance) { m_hInstance = instance; }
    void Term() { m_hInstance = nullptr; }

    HINSTANCE GetModuleInstance() const { return m_hInstance; }

    // Guards objects that are created once in the process, at their first use.
    CCriticalSection& Lock() { return m_lock; }

    // Adds the loop of the current thread. The module does not own it.
    void AddMessageLoop(CMessageLoop* loop) {
        const CCriticalSectionLock guard(m_lock);
        m_loops.emplace_back(GetCurrentThreadId(), loop);
    }
    void RemoveMessageLoop() {
        const CCriticalSectionLock guard(m_lock);
        std::erase_if(m_loops, IsOfCurrentThread);
    }
    // Null if the current thread has none.
    CMessageLoop* GetMessageLoop() {
        const CCriticalSectionLock guard(m_lock);
        const auto found = std::ranges::find_if(m_loops, IsOfCurrentThread);
        return found == m_loops.end() ? nullptr : found->second;
    }

private:
    using ThreadLoop = std::pair<DWORD, CMessageLoop*>;

    static bool IsOfCurrentThread(const ThreadLoop& entry) {
        return entry.first == GetCurrentThreadId();
    }

    HINSTANCE m_hInstance = nullptr;
    CCriticalSection m_lock;
    std::vector<ThreadLoop> m_loops;
};

// The program defines it.
extern CAppModule _Module;
