// The message loop of a thread, with its message filters and idle handlers.
#pragma once

#include <windows.h>

#include <vector>

// Receives each queued message before it is translated and dispatched.
class CMessageFilter {
public:
    // Non-zero: the message is consumed.
    virtual BOOL PreTranslateMessage(MSG* message) = 0;

protected:
    ~CMessageFilter() = default;
};

// Called when the queue is empty.
class CIdleHandler {
public:
    // The result is not used.
    virtual BOOL OnIdle() = 0;

protected:
    ~CIdleHandler() = default;
};

class CMessageLoop {
public:
    CMessageLoop() = default;
    virtual ~CMessageLoop() = default;
    CMessageLoop(const CMessageLoop&) = delete;
    CMessageLoop& operator=(const CMessageLoop&) = delete;

    // The loop does not own filters and handlers; they must exist until Run has returned.
    void AddMessageFilter(CMessageFilter* filter) { m_filters.push_back(filter); }
    void AddIdleHandler(CIdleHandler* handler) { m_idleHandlers.push_back(handler); }

    // Dispatches the messages of the thread until the quit message; returns its exit code.
    int Run() {
        MSG message;
        for (;;) {
            if (!PeekMessageA(&message, nullptr, 0, 0, PM_NOREMOVE)) CallIdleHandlers();
            const BOOL got = GetMessageA(&message, nullptr, 0, 0);
            if (got == -1) continue;
            if (got == 0) return static_cast<int>(message.wParam);
            if (IsConsumedByFilter(&message)) continue;
            TranslateMessage(&message);
            DispatchMessageA(&message);
        }
    }

private:
    void CallIdleHandlers() {
        for (CIdleHandler* handler : m_idleHandlers) handler->OnIdle();
    }

    // The filter added last is called first.
    bool IsConsumedByFilter(MSG* message) {
        for (auto filter = m_filters.rbegin(); filter != m_filters.rend(); ++filter)
            if ((*filter)->PreTranslateMessage(message)) return true;
        return false;
    }

    std::vector<CMessageFilter*> m_filters;
    std::vector<CIdleHandler*> m_idleHandlers;
};
