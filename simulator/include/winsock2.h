// Sockets. The calls are real ones, under Windows' names and with Windows' error numbers; a broken
// connection is an error of the call and never a signal.
#pragma once

// The system's own calls of these names are renamed, since their parameters differ from those of
// Windows; include this header before others that declare them.
#define socket posix_socket
#define setsockopt posix_setsockopt
#define bind posix_bind
#define listen posix_listen
#define accept posix_accept
#define connect posix_connect
#define send posix_send
#define sendto posix_sendto
#define recv posix_recv
#define shutdown posix_shutdown
#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#undef socket
#undef setsockopt
#undef bind
#undef listen
#undef accept
#undef connect
#undef send
#undef sendto
#undef recv
#undef shutdown

#include "windef.h"

using SOCKET = UINT_PTR;

#define INVALID_SOCKET ((SOCKET)(~0))
#define SOCKET_ERROR (-1)
#define SD_SEND 1

#define WSAEINTR 10004
#define WSAEACCES 10013
#define WSAEINVAL 10022
#define WSAEMFILE 10024
#define WSAEWOULDBLOCK 10035
#define WSAEINPROGRESS 10036
#define WSAENOTSOCK 10038
#define WSAEMSGSIZE 10040
#define WSAEPROTONOSUPPORT 10043
#define WSAEADDRINUSE 10048
#define WSAEADDRNOTAVAIL 10049
#define WSAENETUNREACH 10051
#define WSAECONNABORTED 10053
#define WSAECONNRESET 10054
#define WSAENOBUFS 10055
#define WSAEISCONN 10056
#define WSAENOTCONN 10057
#define WSAESHUTDOWN 10058
#define WSAETIMEDOUT 10060
#define WSAECONNREFUSED 10061
#define WSAEHOSTUNREACH 10065
#define WSANOTINITIALISED 10093

struct WSADATA {
    WORD wVersion;
    WORD wHighVersion;
    unsigned short iMaxSockets;
    unsigned short iMaxUdpDg;
    char* lpVendorInfo;
    char szDescription[257];
    char szSystemStatus[129];
};
using LPWSADATA = WSADATA*;

// Every call below but these needs a WSAStartup without its WSACleanup.
int WSAStartup(WORD version, LPWSADATA data);
int WSACleanup();
int WSAGetLastError();

SOCKET socket(int family, int type, int protocol);
int setsockopt(SOCKET socket, int level, int option, const char* value, int size);
int bind(SOCKET socket, const sockaddr* address, int size);
int listen(SOCKET socket, int backlog);
SOCKET accept(SOCKET socket, sockaddr* address, int* size);
int connect(SOCKET socket, const sockaddr* address, int size);
int send(SOCKET socket, const char* data, int size, int flags);
int sendto(SOCKET socket, const char* data, int size, int flags, const sockaddr* address,
           int addressSize);
int recv(SOCKET socket, char* data, int size, int flags);
int shutdown(SOCKET socket, int how);
int closesocket(SOCKET socket);
