// A command sent to the agent as a datagram, against the system calls that it takes; with the
// transport known, and looked up in vain each time because the agent's key is not there.

#include <winsock2.h>

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "command_by_hand.h"
#include "comparison.h"
#include "hlxCommand.h"

namespace {

// An empty registry and started sockets, for the life of the program.
struct Machine {
    std::string registry = (std::filesystem::temp_directory_path() / "registry-XXXXXX").string();

    Machine() {
        setenv("WIN32_REGISTRY", mkdtemp(registry.data()), 1);
        WSADATA data;
        WSAStartup(0x0202, &data);
    }
    ~Machine() { std::filesystem::remove_all(registry); }
};

void RegisterSend(const char* work, std::int32_t useTcp, double goal) {
    Compare(work, "ours", 0, Repeat([useTcp] {
                g_useTcp = useTcp;
                hlx_requestReassess();
            }));
    Compare(work, "socket, setsockopt, sendto, close", goal,
            Repeat([] { SendByHand(HLX_UDP_PORT); }));
}

}  // namespace

void RegisterCommand() {
    static const Machine machine;
    RegisterSend("datagram", 0, 1.0);
    RegisterSend("datagram without the agent's key", -1, 1.2);
}
