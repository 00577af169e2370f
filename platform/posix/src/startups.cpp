#include "src/startups.h"

#include <atomic>

#include "machine/faults.h"
#include "objbase.h"
#include "src/last_error.h"
#include "winsock2.h"

namespace {

std::atomic<int> g_socketStartups{0};
thread_local int t_comStartups = 0;

}  // namespace

int win32::SocketStartups() { return g_socketStartups; }

int WSAStartup(WORD version, LPWSADATA data) {
    if (const auto error = machine::Strike("WSAStartup")) return static_cast<int>(*error);
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
    if (const auto error = machine::Strike("CoInitialize")) return static_cast<HRESULT>(*error);
    return t_comStartups++ == 0 ? S_OK : S_FALSE;
}

void CoUninitialize() {
    if (t_comStartups > 0) --t_comStartups;
}
