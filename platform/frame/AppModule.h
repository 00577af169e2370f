// The program as one module: its instance handle, its process-wide lock and its message loops.
#pragma once

#include <windows.h>

#include <map>

#include "frame/CriticalSection.h"
#include "frame/MessageLoop.h"

class CAppModule {
public:
    void Init(HINSTANCE instance) { m_hInstance = instance; }
    void Term() { m_hInstance = nullptr; }

    HINSTANCE GetModuleInstance() const { return m_hInstance; }

    // For what is made once in the process, at its first use.
    CCriticalSection& Lock() { return m_lock; }

    // The loop of the current thread. The module does not own it.
    void AddMessageLoop(CMessageLoop* loop) {
        const CCriticalSectionLock guard(m_lock);
        m_loops[GetCurrentThreadId()] = loop;
    }
    void RemoveMessageLoop() {
        const CCriticalSectionLock guard(m_lock);
        m_loops.erase(GetCurrentThreadId());
    }
    // Null if the current thread has none.
    CMessageLoop* GetMessageLoop() {
        const CCriticalSectionLock guard(m_lock);
        const auto found = m_loops.find(GetCurrentThreadId());
        return found == m_loops.end() ? nullptr : found->second;
    }

private:
    HINSTANCE m_hInstance = nullptr;
    CCriticalSection m_lock;
    std::map<DWORD, CMessageLoop*> m_loops;
};

// The program defines it, once.
extern CAppModule _Module;
