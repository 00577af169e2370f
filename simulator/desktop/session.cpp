#include "simulator/session.h"

#include <cstdio>
#include <cstdlib>
#include <thread>
#include <utility>

#include "simulator/desktop.h"
#include "simulator/clock.h"
#include "core/waiting.h"
#include "user/desktop_state.h"
#include "user/window.h"

namespace desktop {
namespace {

constexpr int kSecondsToEnd = 30;

}  // namespace

struct Session::State {
    void Run(const std::function<int()>& entry);
    bool HasEndedWithin(std::chrono::seconds span);

    std::optional<int> exitCode;  // under the simulator's lock
    simulator::ThreadRegistration registration;
    std::thread thread;
};

Session::Session(std::function<int()> entry) : m_state(std::make_unique<State>()) {
    m_state->thread = std::thread([state = m_state.get(), entry = std::move(entry)] {
        state->registration.Enter();
        state->Run(entry);
        state->registration.Leave();
    });
}

Session::~Session() {
    End();
    Forget();
    const simulator::StateLock lock = simulator::LockState();
    user::TheDesktop() = {};
}

void Session::State::Run(const std::function<int()>& entry) {
    const int code = entry();
    user::DropWindowsOfThread();
    {
        const simulator::StateLock lock = simulator::LockState();
        exitCode = code;
        simulator::NotifyStateChanged();
    }
    simulator::Record({EventKind::kEnded, static_cast<UINT>(code), "", ""});
}

std::optional<int> Session::ExitCode() const {
    simulator::StateLock lock = simulator::LockState();
    simulator::WaitUntilIdle(lock);
    return m_state->exitCode;
}

int Session::End() {
    if (!ExitCode()) LogOff();
    for (int second = 0;
         second < kSecondsToEnd && !m_state->HasEndedWithin(std::chrono::seconds(1));)
        ++second;
    const auto code = ExitCode();
    if (!code) {
        std::fprintf(stderr, "The program on the desktop did not end when the user logged off\n");
        std::abort();
    }
    if (m_state->thread.joinable()) m_state->thread.join();
    return *code;
}

bool Session::State::HasEndedWithin(std::chrono::seconds span) {
    if (simulator::Clock::IsManual()) Advance(span);
    simulator::StateLock lock = simulator::LockState();
    if (!simulator::Clock::IsManual())
        simulator::WaitFor(
            lock, [this] { return exitCode.has_value(); },
            simulator::Clock::Uptime() + span.count() * simulator::kTicksPerSecond);
    simulator::WaitUntilIdle(lock);
    return exitCode.has_value();
}

}  // namespace desktop
