// The four system calls that send a command as a datagram. In a file of its own: winsock2.h has its
// own functions of these names.

#include "command_by_hand.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

void SendByHand(std::uint16_t port) {
    constexpr unsigned char kFrame[] = {0, 0, 0, 4, 0, 0, 0, 5, 0, 0, 0, 0, 0};
    constexpr int kBufferSize = 20'000;
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const int file = socket(AF_INET, SOCK_DGRAM, 0);
    setsockopt(file, SOL_SOCKET, SO_SNDBUF, &kBufferSize, sizeof kBufferSize);
    sendto(file, kFrame, sizeof kFrame, 0, reinterpret_cast<const sockaddr*>(&address),
           sizeof address);
    close(file);
}
