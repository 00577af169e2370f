// The stand-in at work: it listens, shows what comes, answers by the plan, and takes commands
// meanwhile.
#pragma once

#include <mutex>
#include <string>

#include "Arguments.h"
#include "FrameListener.h"
#include "HostLog.h"

namespace agent_sim {

// The process's use of sockets.
class SocketsInUse {
public:
    SocketsInUse();
    ~SocketsInUse() { WSACleanup(); }
    SocketsInUse(const SocketsInUse&) = delete;
    SocketsInUse& operator=(const SocketsInUse&) = delete;
};

class Daemon {
public:
    // Listens from here on. Throws std::runtime_error if the ports are taken.
    explicit Daemon(HostLog& log);

    // Carries out one command; what is wrong with it is said, not thrown.
    void Obey(Arguments arguments);

    // Carries out the lines of standard input up to "quit"; after the end of the input it goes on
    // listening for good.
    void ObeyInput();

    // Plays everything the applet can show, a step each `pace` seconds.
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
