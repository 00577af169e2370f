#include "FrameListener.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <stdexcept>
#include <string>
#include <vector>

#include "hlxCommand.h"

namespace agent_sim {
namespace {

constexpr int kLargestDatagram = 65536;
constexpr std::size_t kMostConnections = 50;  // more have to wait; select handles 64 on Windows

CHlxSocket BoundSocket(int type, std::uint16_t port, const char* name) {
    CHlxSocket bound(socket(AF_INET, type, 0));
    const sockaddr_in address = hlx_loopbackAddress(port);
    if (bound.IsOpen() &&
        bind(bound.Handle(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0)
        return bound;
    throw std::runtime_error(std::string("cannot listen on ") + name +
                             "; is another daemon running?");
}

char* AsChars(std::uint8_t* bytes) { return reinterpret_cast<char*>(bytes); }

}  // namespace

FrameListener::FrameListener(Handler handler)
    : handler_(std::move(handler)),
      datagrams_(BoundSocket(SOCK_DGRAM, HLX_UDP_PORT, "UDP port 30022")),
      stream_(BoundSocket(SOCK_STREAM, HLX_TCP_PORT, "TCP port 30024")) {
    if (listen(stream_.Handle(), SOMAXCONN) != 0) throw std::runtime_error("cannot listen on TCP");
    thread_ = std::thread([this] { Listen(); });
}

// The datagram wakes the thread, which then reads the flag.
FrameListener::~FrameListener() {
    ending_ = true;
    const sockaddr_in address = hlx_loopbackAddress(HLX_UDP_PORT);
    sendto(datagrams_.Handle(), "", 0, 0, reinterpret_cast<const sockaddr*>(&address),
           sizeof address);
    thread_.join();
}

void FrameListener::Listen() {
    while (!ending_) {
        try {
            Serve();
        } catch (const std::exception&) {
            std::this_thread::sleep_for(std::chrono::seconds(1));  // possibly a transient shortage
        }
    }
}

void FrameListener::Serve() {
    fd_set readable;
    FD_ZERO(&readable);
    SOCKET highest = datagrams_.Handle();
    const auto await = [&](SOCKET handle) {
        FD_SET(handle, &readable);
        highest = std::max(highest, handle);
    };
    await(datagrams_.Handle());
    if (connections_.size() < kMostConnections) await(stream_.Handle());
    for (const Connection& connection : connections_) await(connection.peer.Handle());
    timeval limit{1, 0};
    const int ready = select(static_cast<int>(highest) + 1, &readable, nullptr, nullptr, &limit);
    if (ready < 0) throw std::runtime_error("cannot wait for sockets");
    if (ready == 0) return;
    if (FD_ISSET(datagrams_.Handle(), &readable)) ServeDatagram();
    connections_.remove_if([&](Connection& connection) {
        return FD_ISSET(connection.peer.Handle(), &readable) && !ServeConnection(connection);
    });
    if (FD_ISSET(stream_.Handle(), &readable)) {
        const SOCKET accepted = accept(stream_.Handle(), nullptr, nullptr);
        if (accepted == INVALID_SOCKET) throw std::runtime_error("cannot accept a connection");
        connections_.emplace_back(accepted);
    }
}

void FrameListener::ServeDatagram() {
    std::vector<std::uint8_t> datagram(kLargestDatagram);
    const auto size = recv(datagrams_.Handle(), AsChars(datagram.data()), kLargestDatagram, 0);
    if (size > 0) handler_("UDP", Bytes(datagram).first(static_cast<std::size_t>(size)));
}

bool FrameListener::ServeConnection(Connection& connection) {
    std::array<std::uint8_t, 4096> piece;
    const auto size = recv(connection.peer.Handle(), AsChars(piece.data()), int{piece.size()}, 0);
    FrameSplitter& frames = connection.frames;
    if (size > 0) {
        frames.Append(Bytes(piece).first(static_cast<std::size_t>(size)));
        while (const auto frame = frames.Next()) handler_("TCP", *frame);
        if (frames.Announced() <= kLongestPayload) return true;
    }
    if (!frames.Rest().empty()) handler_("TCP", frames.Rest());
    return false;
}

}  // namespace agent_sim
