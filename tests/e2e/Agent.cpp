#include "Agent.h"

#include <gtest/gtest.h>

#include "AgentDirectory.h"
#include "Updates.h"
#include "hlxInterface.h"

namespace {

bool Readable(SOCKET socket, DWORD limitMs) {
    fd_set set;
    FD_ZERO(&set);
    set.fd_array[set.fd_count++] = socket;
    timeval limit{static_cast<long>(limitMs / 1000), static_cast<long>(limitMs % 1000 * 1000)};
    return select(0, &set, nullptr, nullptr, &limit) == 1;
}

void Unregister() {
    RegDeleteTreeA(HKEY_LOCAL_MACHINE, HLX_AGENT_KEY);
    RegDeleteKeyValueA(HKEY_LOCAL_MACHINE, HLX_CPLS_KEY, HLX_CPLS_VALUE);
}

}  // namespace

Listener::Listener(Transport transport) : transport_(transport) {
    WSADATA sockets;
    WSAStartup(MAKEWORD(2, 2), &sockets);
    socket_ = socket(AF_INET, transport, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(transport == kUdp ? HLX_UDP_PORT : HLX_TCP_PORT);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    EXPECT_EQ(bind(socket_, reinterpret_cast<sockaddr*>(&address), sizeof address), 0)
        << "another daemon has the port";
    if (transport == kTcp) {
        EXPECT_EQ(listen(socket_, 1), 0);
    }
}

Listener::~Listener() {
    closesocket(socket_);
    WSACleanup();
}

std::string Listener::Receive(DWORD limitMs) const {
    if (!Readable(socket_, limitMs)) return {};
    const SOCKET peer = transport_ == kTcp ? accept(socket_, nullptr, nullptr) : socket_;
    std::string frame;
    char buffer[512];
    int size = 0;
    do {
        size = Readable(peer, limitMs) ? recv(peer, buffer, sizeof buffer, 0) : 0;
        if (size > 0) frame.append(buffer, static_cast<size_t>(size));
    } while (transport_ == kTcp && size > 0);
    if (transport_ == kTcp) closesocket(peer);
    return frame;
}

std::string FrameOf(char command) { return {0, 0, 0, command, 0, 0, 0, 5, 0, 0, 0, 0, 0}; }

Agent::Agent(bool useTcp, const std::string& controlPanelApplet)
    : directory_(std::filesystem::temp_directory_path() / "vh_tray e2e") {
    Unregister();
    agent_sim::PrepareAgent(directory_, useTcp, controlPanelApplet);
}

Agent::~Agent() {
    Unregister();
    std::error_code ignored;
    std::filesystem::remove_all(directory_, ignored);
}

void Agent::Report(agent_sim::Notification notification) const {
    notification.messagePopup = !notification.message.empty();
    notification.urlPopup = !notification.url.empty();
    agent_sim::WriteNotification(agent_sim::NotificationPath(), notification);
}

void Agent::Offer(const std::string& name, const std::string& version) const {
    agent_sim::WriteOffer({name, version, "third", "fourth"});
}
