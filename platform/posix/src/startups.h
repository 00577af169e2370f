// Whether the process has started the socket library and not yet closed it.
#pragma once

namespace win32 {

// Calls of WSAStartup that WSACleanup has not taken back.
int SocketStartups();

}  // namespace win32
