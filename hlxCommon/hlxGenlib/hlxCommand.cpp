#include "hlxCommand.h"

#include <winsock2.h>
#include <windows.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>

#include "hlxAgentKey.h"
#include "hlxBigEndian.h"
#include "hlxComposite.h"
#include "hlxOwned.h"
#include "hlxSocket.h"

std::atomic<std::int32_t> g_useTcp{-1};

namespace {

constexpr int kSendBufferSize = 20000;  // bytes
constexpr int kSendAttempts = 100;      // of a datagram that would block or was interrupted
constexpr DWORD kTcpLingerTime = 1000;  // milliseconds between the frame and the end of sending

// A frame in memory; empty if there is not enough memory.
class Frame {
public:
    Frame(std::uint32_t command, const std::uint8_t* payload, std::uint32_t length) {
        if (length > INT_MAX - HLX_FRAME_HEADER_SIZE) return;  // the sockets count in int
        m_bytes.reset(static_cast<std::uint8_t*>(std::malloc(HLX_FRAME_HEADER_SIZE + length)));
        if (!m_bytes) return;
        hlx_storeBig32(m_bytes.get(), command);
        hlx_storeBig32(m_bytes.get() + 4, length);
        std::memcpy(m_bytes.get() + HLX_FRAME_HEADER_SIZE, payload, length);
        m_size = static_cast<int>(HLX_FRAME_HEADER_SIZE + length);
    }

    bool IsEmpty() const { return m_size == 0; }
    const char* Bytes() const { return reinterpret_cast<const char*>(m_bytes.get()); }
    int Size() const { return m_size; }

private:
    HlxBlock<std::uint8_t> m_bytes;
    int m_size = 0;
};

const sockaddr* Generic(const sockaddr_in& address) {
    return reinterpret_cast<const sockaddr*>(&address);
}

// The number can be that of the C library or that of the sockets.
bool IsWorthRepeating(int error) {
    return error == WSAEWOULDBLOCK || error == WSAEINTR || error == EAGAIN || error == EINTR;
}

HlxResult SendDatagram(std::uint16_t port, const Frame& frame, std::int32_t& error) {
    const CHlxSocket local(socket(AF_INET, SOCK_DGRAM, 0));
    if (!local.IsOpen()) {
        error = WSAGetLastError();
        return HLX_SOCKET_FAILED;
    }
    setsockopt(local.Handle(), SOL_SOCKET, SO_SNDBUF,
               reinterpret_cast<const char*>(&kSendBufferSize), sizeof kSendBufferSize);
    const sockaddr_in address = hlx_loopbackAddress(port);
    for (int attempt = 0; attempt < kSendAttempts; ++attempt) {
        if (sendto(local.Handle(), frame.Bytes(), frame.Size(), 0, Generic(address),
                   sizeof address) != SOCKET_ERROR)
            return HLX_DONE;
        error = WSAGetLastError();
        if (!IsWorthRepeating(error)) break;
    }
    return HLX_SOCKET_FAILED;
}

// Sends the frame over a connection to `address`; false at the first call that fails.
bool Deliver(SOCKET connection, const sockaddr_in& address, const Frame& frame) {
    if (connect(connection, Generic(address), sizeof address) == SOCKET_ERROR) return false;
    if (send(connection, frame.Bytes(), frame.Size(), 0) == SOCKET_ERROR) return false;
    Sleep(kTcpLingerTime);
    return shutdown(connection, SD_SEND) != SOCKET_ERROR;
}

HlxResult SendStream(std::uint16_t port, const Frame& frame, std::int32_t& error) {
    const CHlxSocket local(socket(AF_INET, SOCK_STREAM, 0));
    if (local.IsOpen() && Deliver(local.Handle(), hlx_loopbackAddress(port), frame))
        return HLX_DONE;
    error = WSAGetLastError();
    return HLX_SOCKET_FAILED;
}

// Builds the frame and sends it with `transport`.
HlxResult SendFrame(HlxResult (*transport)(std::uint16_t, const Frame&, std::int32_t&),
                    std::uint16_t port, std::uint32_t command, const std::uint8_t* payload,
                    std::uint32_t length, std::int32_t* error) {
    if (!payload || length == 0) return HLX_REFUSED;
    const Frame frame(command, payload, length);
    if (frame.IsEmpty()) return HLX_NO_MEMORY;
    std::int32_t socketError = 0;
    const HlxResult result = transport(port, frame, socketError);
    if (error) *error = socketError;
    return result;
}

// The common part of the public operations, whose result is only the socket error.
std::int32_t Send(HlxCommand command, const void* payload, std::uint32_t length) {
    std::int32_t error = 0;
    hlx_sendCommand(HLX_UDP_PORT, command, static_cast<const std::uint8_t*>(payload), length,
                    &error);
    return error;
}

std::int32_t SendBare(HlxCommand command) {
    constexpr std::uint8_t kZeros[HLX_BARE_PAYLOAD_SIZE] = {};
    return Send(command, kZeros, sizeof kZeros);
}

}  // namespace

std::int32_t hlx_useTcp() {
    if (const std::int32_t known = g_useTcp; known != -1) return known;
    const std::optional<std::int32_t> setting = hlx_readUseTcp();
    if (!setting) return -1;
    g_useTcp = *setting;
    return *setting;
}

HlxResult hlx_sendCommand(std::uint16_t port, std::uint32_t command, const std::uint8_t* payload,
                          std::uint32_t length, std::int32_t* error) {
    if (hlx_useTcp() == 1) return hlx_sendCommandTcp(HLX_TCP_PORT, command, payload, length, error);
    return SendFrame(SendDatagram, port, command, payload, length, error);
}

HlxResult hlx_sendCommandTcp(std::uint16_t port, std::uint32_t command, const std::uint8_t* payload,
                             std::uint32_t length, std::int32_t* error) {
    return SendFrame(SendStream, port, command, payload, length, error);
}

std::int32_t hlx_sendCommand2() { return SendBare(HLX_COMMAND_2); }
std::int32_t hlx_requestReassess() { return SendBare(HLX_COMMAND_REASSESS); }
std::int32_t hlx_sendCommand5() { return SendBare(HLX_COMMAND_5); }
std::int32_t hlx_sendCommand6() { return SendBare(HLX_COMMAND_6); }
std::int32_t hlx_requestDownload() { return SendBare(HLX_COMMAND_DOWNLOAD); }
std::int32_t hlx_sendCommand12() { return SendBare(HLX_COMMAND_12); }
std::int32_t hlx_sendCommand13() { return SendBare(HLX_COMMAND_13); }

std::int32_t hlx_sendRecord8(const void* record) {
    return record ? Send(HLX_COMMAND_RECORD_8, record, HLX_RECORD_8_SIZE) : HLX_REFUSED;
}

std::int32_t hlx_sendRecord9(const void* record) {
    return record ? Send(HLX_COMMAND_RECORD_9, record, HLX_RECORD_9_SIZE) : HLX_REFUSED;
}

std::int32_t hlx_sendText(const char* text) {
    // No frame can hold a text whose length exceeds 32 bits.
    const std::size_t size = std::min<std::size_t>(std::strlen(text) + 1, UINT32_MAX);
    return Send(HLX_COMMAND_TEXT, text, static_cast<std::uint32_t>(size));
}

std::int32_t hlx_sendComposite(std::uint32_t length1, const std::uint8_t* blob1,
                               std::uint32_t length2, const std::uint8_t* blob2,
                               std::uint32_t length3, const std::uint8_t* blob3) {
    std::uint32_t size = 0;
    std::int32_t error = 0;
    const HlxBlock<std::uint8_t> message(
        hlx_buildComposite(length1, blob1, length2, blob2, length3, blob3, &size, &error));
    return message ? Send(HLX_COMMAND_COMPOSITE, message.get(), size) : error;
}
