// Registration of threads. With it the simulator determines when the program is idle.
//
// Threads that the simulated API starts are registered by it. A test registers only what it starts
// itself.
#pragma once

namespace simulator {

// The registration of one thread. The thread that starts the other one makes the object, so that
// the new thread is known before it runs; the new thread calls Enter first and Leave last.
class ThreadRegistration {
public:
    ThreadRegistration();
    ~ThreadRegistration();
    ThreadRegistration(const ThreadRegistration&) = delete;
    ThreadRegistration& operator=(const ThreadRegistration&) = delete;

    void Enter();
    void Leave();

    // Abandons the thread; called under the lock of the simulator. No wait includes it any longer,
    // and it stops forever at its next wait.
    void Abandon();
    bool IsAbandoned() const { return m_abandoned; }

private:
    bool m_counted = true;
    bool m_abandoned = false;
};

// Waits until every registered thread but the caller is idle.
void WaitUntilIdle();

}  // namespace simulator
