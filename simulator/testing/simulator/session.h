// One run of a program on the simulated desktop.
#pragma once

#include <windows.h>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace desktop {

class Session {
public:
    // Starts the program's entry on a thread of its own. `entry` returns the exit code.
    explicit Session(std::function<int()> entry);

    // Logs off, if the program still runs, and waits for its end; a manual clock is moved forward
    // as far as needed. A program that does not end after that ends the process with a message.
    ~Session();

    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    // Empty while the program runs.
    std::optional<int> ExitCode() const;

    // Logs off and returns the exit code.
    int End();

private:
    struct State;

    const std::unique_ptr<State> m_state;
};

}  // namespace desktop
