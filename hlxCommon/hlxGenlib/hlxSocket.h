// An owner for a socket, and the address at which the daemon listens.
#pragma once

#include <winsock2.h>

#include <cstdint>
#include <utility>

// Closes its socket when it is destroyed.
class CHlxSocket {
public:
    // INVALID_SOCKET: not open.
    explicit CHlxSocket(SOCKET handle) : m_socket(handle) {}
    CHlxSocket(CHlxSocket&& other) noexcept
        : m_socket(std::exchange(other.m_socket, INVALID_SOCKET)) {}
    CHlxSocket& operator=(CHlxSocket&&) = delete;
    ~CHlxSocket() {
        if (IsOpen()) closesocket(m_socket);
    }

    bool IsOpen() const { return m_socket != INVALID_SOCKET; }
    SOCKET Handle() const { return m_socket; }

private:
    SOCKET m_socket;
};

// A port of the loopback interface.
inline sockaddr_in hlx_loopbackAddress(std::uint16_t port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}
