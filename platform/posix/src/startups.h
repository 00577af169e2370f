// Which of the system's libraries the process has started and not yet closed.
#pragma once

namespace win32 {

// Calls of WSAStartup that WSACleanup has not taken back.
int SocketStartups();

// Calls of CoInitialize that CoUninitialize has not taken back, on all threads.
int ComStartups();

}  // namespace win32
