// The daemon's end of either transport: a socket bound to a port of the loopback address.
#pragma once

#include "hex.h"
#include "hlxSocket.h"

class Loopback {
public:
    Loopback(int type, unsigned short port) {
        WSADATA data;
        WSAStartup(0x0202, &data);
        m_socket = socket(AF_INET, type, 0);
        const sockaddr_in address = hlx_loopbackAddress(port);
        if (bind(m_socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
            throw std::runtime_error("the daemon's port is taken");
    }
    ~Loopback() {
        closesocket(m_socket);
        WSACleanup();
    }
    Loopback(const Loopback&) = delete;
    Loopback& operator=(const Loopback&) = delete;

    operator SOCKET() const { return m_socket; }

private:
    SOCKET m_socket;
};

// What comes next, "end" when the other side has closed.
inline std::string ReceivedHex(SOCKET from, int flags = 0) {
    char buffer[2000];
    const int size = recv(from, buffer, int{sizeof buffer}, flags);
    if (size < 0) return "nothing";
    return size == 0 ? "end" : Hex(buffer, static_cast<std::size_t>(size));
}
