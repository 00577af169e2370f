#include "FrameListener.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string>
#include <vector>

#include "hlxCommand.h"

namespace agent_sim {
namespace {

constexpr int kLargestDatagram = 65536;

sockaddr_in LocalAddress(std::uint16_t port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

SOCKET BoundSocket(int type, std::uint16_t port, const char* name) {
    const SOCKET handle = socket(AF_INET, type, 0);
    const sockaddr_in address = LocalAddress(port);
    if (handle == INVALID_SOCKET ||
        bind(handle, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        throw std::runtime_error(std::string("cannot listen on ") + name +
                                 "; does another daemon hold it?");
    return handle;
}

char* AsChars(std::uint8_t* bytes) { return reinterpret_cast<char*>(bytes); }

}  // namespace

FrameListener::FrameListener(Handler handler)
    : handler_(std::move(handler)),
      datagrams_(BoundSocket(SOCK_DGRAM, kHlxUdpPort, "UDP port 30022")),
      stream_(BoundSocket(SOCK_STREAM, kHlxTcpPort, "TCP port 30024")) {
    if (listen(stream_.Handle(), SOMAXCONN) != 0) throw std::runtime_error("cannot listen on TCP");
    thread_ = std::thread([this] { Listen(); });
}

// An empty datagram is no frame; it tells the thread to end.
FrameListener::~FrameListener() {
    const sockaddr_in address = LocalAddress(kHlxUdpPort);
    sendto(datagrams_.Handle(), "", 0, 0, reinterpret_cast<const sockaddr*>(&address),
           sizeof address);
    thread_.join();
}

void FrameListener::Listen() {
    for (;;) {
        fd_set readable;
        FD_ZERO(&readable);
        SOCKET highest = std::max(datagrams_.Handle(), stream_.Handle());
        FD_SET(datagrams_.Handle(), &readable);
        FD_SET(stream_.Handle(), &readable);
        for (const Connection& connection : connections_) {
            FD_SET(connection.peer.Handle(), &readable);
            highest = std::max(highest, connection.peer.Handle());
        }
        if (select(static_cast<int>(highest) + 1, &readable, nullptr, nullptr, nullptr) <= 0)
            continue;
        if (FD_ISSET(datagrams_.Handle(), &readable) && !ServeDatagram()) return;
        connections_.remove_if([&](Connection& connection) {
            return FD_ISSET(connection.peer.Handle(), &readable) && !ServeConnection(connection);
        });
        if (FD_ISSET(stream_.Handle(), &readable)) {
            const SOCKET fresh = accept(stream_.Handle(), nullptr, nullptr);
            if (fresh != INVALID_SOCKET) connections_.emplace_back(fresh);
        }
    }
}

bool FrameListener::ServeDatagram() {
    std::vector<std::uint8_t> datagram(kLargestDatagram);
    const auto size = recv(datagrams_.Handle(), AsChars(datagram.data()), kLargestDatagram, 0);
    if (size < 0) return true;
    if (size == 0) return false;
    handler_("UDP", Bytes(datagram).first(static_cast<std::size_t>(size)));
    return true;
}

bool FrameListener::ServeConnection(Connection& connection) {
    std::array<std::uint8_t, 4096> piece;
    const auto size = recv(connection.peer.Handle(), AsChars(piece.data()), int{piece.size()}, 0);
    if (size <= 0) {
        if (!connection.frames.Rest().empty()) handler_("TCP", connection.frames.Rest());
        return false;
    }
    connection.frames.Append(Bytes(piece).first(static_cast<std::size_t>(size)));
    while (const auto frame = connection.frames.Next()) handler_("TCP", *frame);
    return true;
}

}  // namespace agent_sim
