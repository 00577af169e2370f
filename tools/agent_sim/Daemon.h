// The listening agent_sim: shows the frames that arrive, answers them by the plan, and carries out
// commands.
#pragma once

#include <mutex>
#include <string>

#include "Arguments.h"
#include "FrameListener.h"
#include "HostLog.h"

namespace agent_sim {

// Initialises the sockets of the process.
class SocketsInUse {
public:
    SocketsInUse();
    ~SocketsInUse() { WSACleanup(); }
    SocketsInUse(const SocketsInUse&) = delete;
    SocketsInUse& operator=(const SocketsInUse&) = delete;
};

class Daemon {
public:
    // Starts to listen. Throws std::runtime_error if a port is in use.
    explicit Daemon(HostLog& log);

    // Carries out one command. Errors are logged, not thrown.
    void Obey(Arguments arguments);

    // Carries out the lines of standard input up to "quit". After the end of the input it listens
    // until the process is ended.
    void ObeyInput();

    // Shows all features of the applet, one step each `pace` seconds.
    void PlayDemo(std::int64_t pace);

private:
    void OnFrame(const char* transport, Bytes frame);
    void Answer(std::uint32_t command);

    HostLog& log_;
    std::mutex mutex_;  // held while the log is written
    SocketsInUse sockets_;
    FrameListener listener_;
};

}  // namespace agent_sim
