// Threads and critical sections.
#include <cerrno>
#include <system_error>
#include <thread>

#include "core/waiting.h"
#include "process.h"
#include "kernel/kernel_object.h"
#include "core/last_error.h"

namespace {

DWORD NewThreadId() {
    static std::atomic<DWORD> last{0};
    return last += 4;
}

thread_local DWORD t_id = NewThreadId();

struct Thread : win32::Waitable {
    const char* Kind() const override { return "thread"; }
    bool Signalled() const override { return ended; }

    // Under the state lock.
    void End() {
        ended = true;
        simulator::NotifyStateChanged();
    }

    const DWORD id = NewThreadId();
    bool ended = false;
    simulator::ThreadRegistration mark;
};

void RunThread(Thread& thread, unsigned (*procedure)(void*), void* argument) {
    t_id = thread.id;
    thread.mark.Enter();
    procedure(argument);
    {
        const auto lock = simulator::LockState();
        thread.End();
    }
    thread.mark.Leave();
}

}  // namespace

std::uintptr_t _beginthreadex(void*, unsigned, unsigned (*procedure)(void*), void* argument,
                              unsigned flags, unsigned* threadId) {
    if (win32::MustFail<"_beginthreadex">()) return 0;
    if (flags) win32::NotImplemented("_beginthreadex with start flags");
    const auto thread = std::make_shared<Thread>();
    if (threadId) *threadId = thread->id;
    try {
        std::thread([=] { RunThread(*thread, procedure, argument); }).detach();
    } catch (const std::system_error&) {
        errno = EAGAIN;
        return 0;
    }
    return reinterpret_cast<std::uintptr_t>(win32::NewHandle(thread));
}

DWORD GetCurrentThreadId() { return t_id; }

BOOL TerminateThread(HANDLE handle, DWORD) {
    if (win32::MustFail<"TerminateThread">()) return FALSE;
    const auto thread = win32::ObjectOf<Thread>(handle);
    if (!thread) return FALSE;
    const auto lock = simulator::LockState();
    thread->mark.Abandon();
    thread->End();
    return TRUE;
}

void InitializeCriticalSection(LPCRITICAL_SECTION section) { *section = {}; }

void EnterCriticalSection(LPCRITICAL_SECTION section) {
    auto lock = simulator::LockState();
    simulator::WaitFor(lock, [=, self = t_id] {
        return section->RecursionCount == 0 || section->OwningThread == self;
    });
    section->OwningThread = t_id;
    ++section->RecursionCount;
}

void LeaveCriticalSection(LPCRITICAL_SECTION section) {
    const auto lock = simulator::LockState();
    if (--section->RecursionCount == 0) simulator::NotifyStateChanged();
}

void DeleteCriticalSection(LPCRITICAL_SECTION section) {
    const auto lock = simulator::LockState();
    *section = {};
}
