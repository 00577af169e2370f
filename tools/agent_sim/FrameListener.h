// The receiving end of the command channel: UDP port 30022 and TCP port 30024 of the local machine.
#pragma once

#include <atomic>
#include <functional>
#include <list>
#include <thread>

#include "FrameText.h"
#include "hlxSocket.h"

namespace agent_sim {

// Receives on a separate thread from construction to destruction.
class FrameListener {
public:
    // Called on the listener's thread with "UDP" or "TCP" and the bytes received: a complete frame,
    // or the last bytes of a peer that are not one. Exceptions are ignored.
    using Handler = std::function<void(const char* transport, Bytes frame)>;

    // Throws std::runtime_error if a port is in use.
    explicit FrameListener(Handler handler);
    ~FrameListener();

private:
    struct Connection {
        explicit Connection(SOCKET handle) : peer(handle) {}
        CHlxSocket peer;
        FrameSplitter frames;
    };

    void Listen();
    // Waits at most a second for data and receives it. Throws if a call or an allocation fails.
    void Serve();
    void ServeDatagram();
    // False: the connection is to be closed.
    bool ServeConnection(Connection& connection);

    Handler handler_;
    CHlxSocket datagrams_;
    CHlxSocket stream_;
    std::list<Connection> connections_;
    std::atomic<bool> ending_{false};
    std::thread thread_;
};

}  // namespace agent_sim
