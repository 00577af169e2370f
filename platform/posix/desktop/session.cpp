#include "desktop/session.h"

#include <cstdio>
#include <cstdlib>
#include <utility>

#include "desktop/desktop.h"
#include "machine/clock.h"
#include "machine/waits.h"
#include "src/user/desk.h"
#include "src/user/window.h"

namespace desktop {

Session::Session(std::function<int()> entry) {
    m_thread = std::thread([this, entry = std::move(entry)] {
        m_mark.Enter();
        Run(entry);
        m_mark.Leave();
    });
}

Session::~Session() {
    End();
    Forget();
    const machine::WorldLock lock = machine::LockWorld();
    user::TheDesk() = {};
}

void Session::Run(const std::function<int()>& entry) {
    const int code = entry();
    user::DropWindowsOfThread();
    {
        const machine::WorldLock lock = machine::LockWorld();
        m_exitCode = code;
        machine::WorldChanged();
    }
    machine::Record({EventKind::kEnded, static_cast<UINT>(code), "", ""});
}

std::optional<int> Session::ExitCode() const {
    machine::WorldLock lock = machine::LockWorld();
    machine::Settle(lock);
    return m_exitCode;
}

int Session::End() {
    if (!ExitCode()) LogOff();
    for (int second = 0; second < kSecondsToEnd && !HasEndedWithin(std::chrono::seconds(1));)
        ++second;
    const auto code = ExitCode();
    if (!code) {
        std::fprintf(stderr, "The program on the desktop did not end when the user logged off\n");
        std::abort();
    }
    if (m_thread.joinable()) m_thread.join();
    return *code;
}

bool Session::HasEndedWithin(std::chrono::seconds span) {
    if (ExitCode()) return true;
    if (machine::Clock::IsHeld()) {
        Advance(span);
    } else {
        machine::WorldLock lock = machine::LockWorld();
        machine::WaitFor(
            lock, [this] { return m_exitCode.has_value(); },
            machine::Clock::Uptime() + span.count() * machine::kTicksPerSecond);
    }
    return ExitCode().has_value();
}

}  // namespace desktop
