// The one-way command channel from programs on the desktop to the agent daemon of the machine.
//
// A frame is a big-endian command number, the big-endian length of the payload and the payload. It
// is sent to 127.0.0.1 as one UDP datagram, or over a separate TCP connection if the agent's
// registry value UseTCP is 1. There is no reply: a result of 0 means that the local sockets
// accepted the frame.
//
// The process must have initialised its sockets (WSAStartup). Any thread may send; the call blocks,
// by TCP until the connection is made and for one second more.
#pragma once

#include <atomic>
#include <cstdint>

#include "hlxInterface.h"
#include "hlxResult.h"

constexpr std::uint32_t HLX_FRAME_HEADER_SIZE = 8;  // command number and payload length
// The zero bytes that are the payload of a command without data: part of the interface, do not
// correct.
constexpr std::uint32_t HLX_BARE_PAYLOAD_SIZE = 5;
constexpr std::uint32_t HLX_RECORD_8_SIZE = 480;  // payload of command 8
constexpr std::uint32_t HLX_RECORD_9_SIZE = 80;   // payload of command 9

enum HlxCommand : std::uint32_t {
    HLX_COMMAND_2 = 2,
    HLX_COMMAND_COMPOSITE = 3,  // a composite message (hlxComposite.h)
    HLX_COMMAND_REASSESS = 4,
    HLX_COMMAND_5 = 5,
    HLX_COMMAND_6 = 6,
    HLX_COMMAND_DOWNLOAD = 7,
    HLX_COMMAND_RECORD_8 = 8,
    HLX_COMMAND_RECORD_9 = 9,
    HLX_COMMAND_TEXT = 10,  // a text with its terminating NUL
    HLX_COMMAND_12 = 12,
    HLX_COMMAND_13 = 13
};

// The setting UseTCP: -1 until the agent's key could be opened, then its value for the life of the
// process; 0 if the key has no such value.
extern std::atomic<std::int32_t> g_useTcp;

// Returns the setting, read on demand; -1 if the key cannot be opened.
std::int32_t hlx_useTcp();

// Each of these sends one command and returns 0 or the number of a socket error. It also returns 0
// if there was no memory for the frame (part of the interface, do not correct).
std::int32_t hlx_sendCommand2();
std::int32_t hlx_requestReassess();
std::int32_t hlx_sendCommand5();
std::int32_t hlx_sendCommand6();
std::int32_t hlx_requestDownload();
std::int32_t hlx_sendCommand12();
std::int32_t hlx_sendCommand13();

// `record` has HLX_RECORD_8_SIZE or HLX_RECORD_9_SIZE bytes; 1 if it is null.
std::int32_t hlx_sendRecord8(const void* record);
std::int32_t hlx_sendRecord9(const void* record);

// `text` is NUL-terminated, never null.
std::int32_t hlx_sendText(const char* text);

// Sends a composite message of three blobs, the third of which may be left out by a zero length or
// a null pointer; 1 if another one is missing or there is no memory. Lengths are in bytes.
std::int32_t hlx_sendComposite(std::uint32_t length1, const std::uint8_t* blob1,
                               std::uint32_t length2, const std::uint8_t* blob2,
                               std::uint32_t length3, const std::uint8_t* blob3);

// Sends a frame with a payload of `length` bytes to `port` by UDP, or to HLX_TCP_PORT by TCP if the
// setting is 1. Codes: 0; HLX_REFUSED without a payload; HLX_NO_MEMORY, also for a payload of 2
// GiB; HLX_SOCKET_FAILED. `error`, if it is given, receives the number of the socket error with
// HLX_SOCKET_FAILED, and with 0 either 0 or the error of an attempt that was repeated.
HlxResult hlx_sendCommand(std::uint16_t port, std::uint32_t command, const std::uint8_t* payload,
                          std::uint32_t length, std::int32_t* error);

// The same by TCP, to `port`.
HlxResult hlx_sendCommandTcp(std::uint16_t port, std::uint32_t command, const std::uint8_t* payload,
                             std::uint32_t length, std::int32_t* error);
