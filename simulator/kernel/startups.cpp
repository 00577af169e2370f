#include "kernel/counts.h"

#include <atomic>

#include "core/fault_point.h"
#include "objbase.h"
#include "core/last_error.h"
#include "winsock2.h"

namespace {

std::atomic<int> g_socketStartups{0};
std::atomic<int> g_comStartups{0};
thread_local int t_comStartups = 0;

}  // namespace

int win32::SocketStartups() { return g_socketStartups; }

int win32::ComStartups() { return g_comStartups; }

int WSAStartup(WORD version, LPWSADATA data) {
    if (const auto error = simulator::InjectedFault<"WSAStartup">())
        return static_cast<int>(*error);
    *data = {};
    data->wVersion = version;
    data->wHighVersion = MAKEWORD(2, 2);
    ++g_socketStartups;
    return 0;
}

int WSACleanup() {
    int count = g_socketStartups;
    do {
        if (count == 0) return win32::Fail(WSANOTINITIALISED, SOCKET_ERROR);
    } while (!g_socketStartups.compare_exchange_weak(count, count - 1));
    return 0;
}

HRESULT CoInitialize(LPVOID) {
    if (const auto error = simulator::InjectedFault<"CoInitialize">())
        return static_cast<HRESULT>(*error);
    ++g_comStartups;
    return t_comStartups++ == 0 ? S_OK : S_FALSE;
}

void CoUninitialize() {
    if (t_comStartups == 0) return;
    --t_comStartups;
    --g_comStartups;
}
