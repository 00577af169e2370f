#include "winsock2.h"

#include <unistd.h>

#include <atomic>
#include <cerrno>

#include "core/last_error.h"
#include "kernel/counts.h"

// The system's calls, which the header renames.
extern "C" decltype(posix_socket) posix_socket __asm__("socket");
extern "C" decltype(posix_setsockopt) posix_setsockopt __asm__("setsockopt");
extern "C" decltype(posix_bind) posix_bind __asm__("bind");
extern "C" decltype(posix_listen) posix_listen __asm__("listen");
extern "C" decltype(posix_connect) posix_connect __asm__("connect");
extern "C" decltype(posix_send) posix_send __asm__("send");
extern "C" decltype(posix_sendto) posix_sendto __asm__("sendto");
extern "C" decltype(posix_recv) posix_recv __asm__("recv");
extern "C" decltype(posix_shutdown) posix_shutdown __asm__("shutdown");

namespace {

int WinsockErrorOf(int error) {
    switch (error) {
        case EINTR:
            return WSAEINTR;
        case EBADF:
        case ENOTSOCK:
            return WSAENOTSOCK;
        case EACCES:
        case EPERM:
            return WSAEACCES;
        case EMFILE:
        case ENFILE:
            return WSAEMFILE;
        case EAGAIN:
            return WSAEWOULDBLOCK;
        case EINPROGRESS:
            return WSAEINPROGRESS;
        case EMSGSIZE:
            return WSAEMSGSIZE;
        case EPROTONOSUPPORT:
            return WSAEPROTONOSUPPORT;
        case EADDRINUSE:
            return WSAEADDRINUSE;
        case EADDRNOTAVAIL:
            return WSAEADDRNOTAVAIL;
        case ENETUNREACH:
            return WSAENETUNREACH;
        case ECONNABORTED:
            return WSAECONNABORTED;
        case ECONNRESET:
            return WSAECONNRESET;
        case ENOBUFS:
        case ENOMEM:
            return WSAENOBUFS;
        case EISCONN:
            return WSAEISCONN;
        case ENOTCONN:
            return WSAENOTCONN;
        case EPIPE:
            return WSAESHUTDOWN;
        case ETIMEDOUT:
            return WSAETIMEDOUT;
        case ECONNREFUSED:
            return WSAECONNREFUSED;
        case EHOSTUNREACH:
            return WSAEHOSTUNREACH;
        default:
            return WSAEINVAL;
    }
}

// False, with the error set, if the call is to fail before it is made.
template <simulator::Literal kCall>
bool MayCall() {
    if (win32::MustFail<kCall>()) return false;
    if (win32::SocketStartups() > 0) return true;
    SetLastError(WSANOTINITIALISED);
    return false;
}

// Passes the result of a system call on, with its error in Windows' numbers.
int Passed(ssize_t result) {
    if (result < 0) SetLastError(static_cast<DWORD>(WinsockErrorOf(errno)));
    return static_cast<int>(result);
}

int FileOf(SOCKET socket) { return static_cast<int>(socket); }

std::atomic<int> g_openSockets{0};

// A new socket, or -1.
SOCKET NewSocket(int file) {
    if (file < 0) return INVALID_SOCKET;
    ++g_openSockets;
    return static_cast<SOCKET>(file);
}

}  // namespace

int win32::OpenSockets() { return g_openSockets; }

int WSAGetLastError() { return static_cast<int>(GetLastError()); }

SOCKET socket(int family, int type, int protocol) {
    if (!MayCall<"socket">()) return INVALID_SOCKET;
    return NewSocket(Passed(posix_socket(family, type | SOCK_CLOEXEC, protocol)));
}

int setsockopt(SOCKET socket, int level, int option, const char* value, int size) {
    if (!MayCall<"setsockopt">()) return SOCKET_ERROR;
    if (option == SO_RCVTIMEO || option == SO_SNDTIMEO)
        win32::NotImplemented("setsockopt with a time limit");
    return Passed(
        posix_setsockopt(FileOf(socket), level, option, value, static_cast<socklen_t>(size)));
}

int bind(SOCKET socket, const sockaddr* address, int size) {
    if (!MayCall<"bind">()) return SOCKET_ERROR;
    // On Windows a port is free as soon as no socket listens, whatever the state of its connections
    // is.
    const int yes = 1;
    int type = 0;
    socklen_t typeSize = sizeof type;
    getsockopt(FileOf(socket), SOL_SOCKET, SO_TYPE, &type, &typeSize);
    if (type == SOCK_STREAM)
        posix_setsockopt(FileOf(socket), SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    return Passed(posix_bind(FileOf(socket), address, static_cast<socklen_t>(size)));
}

int listen(SOCKET socket, int backlog) {
    if (!MayCall<"listen">()) return SOCKET_ERROR;
    return Passed(posix_listen(FileOf(socket), backlog));
}

SOCKET accept(SOCKET socket, sockaddr* address, int* size) {
    if (!MayCall<"accept">()) return INVALID_SOCKET;
    socklen_t length = size ? static_cast<socklen_t>(*size) : 0;
    const int file =
        Passed(::accept4(FileOf(socket), address, size ? &length : nullptr, SOCK_CLOEXEC));
    if (size) *size = static_cast<int>(length);
    return NewSocket(file);
}

int connect(SOCKET socket, const sockaddr* address, int size) {
    if (!MayCall<"connect">()) return SOCKET_ERROR;
    return Passed(posix_connect(FileOf(socket), address, static_cast<socklen_t>(size)));
}

int send(SOCKET socket, const char* data, int size, int flags) {
    if (!MayCall<"send">()) return SOCKET_ERROR;
    return Passed(
        posix_send(FileOf(socket), data, static_cast<std::size_t>(size), flags | MSG_NOSIGNAL));
}

int sendto(SOCKET socket, const char* data, int size, int flags, const sockaddr* address,
           int addressSize) {
    if (!MayCall<"sendto">()) return SOCKET_ERROR;
    return Passed(posix_sendto(FileOf(socket), data, static_cast<std::size_t>(size),
                               flags | MSG_NOSIGNAL, address, static_cast<socklen_t>(addressSize)));
}

int recv(SOCKET socket, char* data, int size, int flags) {
    if (!MayCall<"recv">()) return SOCKET_ERROR;
    return Passed(posix_recv(FileOf(socket), data, static_cast<std::size_t>(size), flags));
}

int shutdown(SOCKET socket, int how) {
    if (!MayCall<"shutdown">()) return SOCKET_ERROR;
    return Passed(posix_shutdown(FileOf(socket), how));
}

int closesocket(SOCKET socket) {
    if (!MayCall<"closesocket">()) return SOCKET_ERROR;
    const int result = Passed(::close(FileOf(socket)));
    if (result == 0) --g_openSockets;
    return result;
}
