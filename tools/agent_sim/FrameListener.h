// The receiving end of the command channel: UDP port 30022 and TCP port 30024 of the local machine.
#pragma once

#include <winsock2.h>

#include <atomic>
#include <functional>
#include <list>
#include <thread>

#include "FrameText.h"

namespace agent_sim {

// A socket that closes itself.
class Socket {
public:
    explicit Socket(SOCKET handle) : handle_(handle) {}
    ~Socket() { closesocket(handle_); }
    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;
    SOCKET Handle() const { return handle_; }

private:
    SOCKET handle_;
};

// Listens on a thread of its own from construction to destruction.
class FrameListener {
public:
    // Called on the listener's thread with "UDP" or "TCP" and what came: a whole frame, or bytes
    // that are none, of which a peer sends no more. What it throws is lost.
    using Handler = std::function<void(const char* transport, Bytes frame)>;

    // Throws std::runtime_error if a port is taken.
    explicit FrameListener(Handler handler);
    ~FrameListener();

private:
    struct Connection {
        explicit Connection(SOCKET handle) : peer(handle) {}
        Socket peer;
        FrameSplitter frames;
    };

    void Listen();
    // Waits for what comes, a second at most, and serves it. Throws if a call or memory fails.
    void Serve();
    void ServeDatagram();
    // Whether the connection goes on.
    bool ServeConnection(Connection& connection);

    Handler handler_;
    Socket datagrams_;
    Socket stream_;
    std::list<Connection> connections_;
    std::atomic<bool> ending_{false};
    std::thread thread_;
};

}  // namespace agent_sim
