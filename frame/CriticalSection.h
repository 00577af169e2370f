// Owns a critical section, and the guard that holds it.
#pragma once

#include <windows.h>

class CCriticalSection {
public:
    CCriticalSection() { InitializeCriticalSection(&m_cs); }
    virtual ~CCriticalSection() { DeleteCriticalSection(&m_cs); }
    CCriticalSection(const CCriticalSection&) = delete;
    CCriticalSection& operator=(const CCriticalSection&) = delete;

    void Enter() { EnterCriticalSection(&m_cs); }
    void Leave() { LeaveCriticalSection(&m_cs); }

private:
    CRITICAL_SECTION m_cs;
};

class CCriticalSectionLock {
public:
    explicit CCriticalSectionLock(CCriticalSection& cs) : m_section(cs) { m_section.Enter(); }
    virtual ~CCriticalSectionLock() { m_section.Leave(); }
    CCriticalSectionLock(const CCriticalSectionLock&) = delete;
    CCriticalSectionLock& operator=(const CCriticalSectionLock&) = delete;

private:
    CCriticalSection& m_section;
};
