// One run of a program on the simulated desktop.
#pragma once

#include <windows.h>

#include <chrono>
#include <functional>
#include <optional>
#include <thread>

#include "machine/waits.h"

namespace desktop {

class Session {
public:
    // Starts the program's entry on a thread of its own. `entry` gives the exit code.
    explicit Session(std::function<int()> entry);

    // Logs off, if the program still runs, and waits for its end; a held clock is moved on as far
    // as the end takes. A program that does not end after that ends the process with a message.
    ~Session();

    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    // Empty while the program runs.
    std::optional<int> ExitCode() const;

    // Logs off and gives the exit code.
    int End();

private:
    static constexpr int kSecondsToEnd = 30;

    bool HasEndedWithin(std::chrono::seconds span);
    void Run(const std::function<int()>& entry);

    std::optional<int> m_exitCode;  // under the lock of the world
    machine::ThreadMark m_mark;
    std::thread m_thread;
};

}  // namespace desktop
