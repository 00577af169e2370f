// The message loop of a thread, and the two hooks into it.
#pragma once

#include <windows.h>

#include <vector>

// Sees each queued message before it is translated and dispatched.
class CMessageFilter {
public:
    // Non-zero: the message is consumed.
    virtual BOOL PreTranslateMessage(MSG* message) = 0;

protected:
    ~CMessageFilter() = default;
};

// Is called whenever the queue has run empty.
class CIdleHandler {
public:
    // The answer is not looked at.
    virtual BOOL OnIdle() = 0;

protected:
    ~CIdleHandler() = default;
};

class CMessageLoop {
public:
    // The loop does not own its hooks; they must live until Run has returned.
    void AddMessageFilter(CMessageFilter* filter) { m_filters.push_back(filter); }
    void AddIdleHandler(CIdleHandler* handler) { m_idleHandlers.push_back(handler); }

    // Serves the thread's queue until the quit message; gives the code that came with it.
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

    // The filter added last is asked first.
    bool IsConsumedByFilter(MSG* message) {
        for (auto filter = m_filters.rbegin(); filter != m_filters.rend(); ++filter)
            if ((*filter)->PreTranslateMessage(message)) return true;
        return false;
    }

    std::vector<CMessageFilter*> m_filters;
    std::vector<CIdleHandler*> m_idleHandlers;
};
