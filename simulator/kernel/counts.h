// Counts of what programs obtain from the kernel without a handle and have to release.
#pragma once

namespace win32 {

int SocketStartups();  // calls of WSAStartup without their WSACleanup
int ComStartups();     // calls of CoInitialize without their CoUninitialize, on all threads
int OpenSockets();
int LocalBlocks();  // memory that LocalFree releases

}  // namespace win32
