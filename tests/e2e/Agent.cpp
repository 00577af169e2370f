#include "Agent.h"

#include <gtest/gtest.h>

namespace {

constexpr char kAgentKey[] = "SOFTWARE\\Corvane Systems\\TessaraLink";
constexpr char kSheetsKey[] = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Control Panel\\Cpls";
constexpr char kSheetValue[] = "Tessara Link ";

constexpr ULONGLONG kTicksPerSecond = 10'000'000;

FILETIME SecondsFromNow(LONGLONG seconds) {
    FILETIME now;
    GetSystemTimeAsFileTime(&now);
    ULARGE_INTEGER ticks;
    ticks.LowPart = now.dwLowDateTime;
    ticks.HighPart = now.dwHighDateTime;
    ticks.QuadPart += static_cast<ULONGLONG>(seconds) * kTicksPerSecond;
    return {ticks.LowPart, ticks.HighPart};
}

void SetValue(const char* key, const std::string& name, DWORD type, const void* data, size_t size) {
    ASSERT_EQ(RegSetKeyValueA(HKEY_LOCAL_MACHINE, key, name.c_str(), type, data,
                              static_cast<DWORD>(size)),
              ERROR_SUCCESS)
        << key << ": does the test run as an administrator?";
}

// The applet compares whole seconds, against the clock as its pass began. A write in that very
// second is missed unless it is stamped as if it came a second later.
void WriteStamped(const std::string& path, const std::string& content) {
    const HANDLE file = CreateFileA(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                                    CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(file, INVALID_HANDLE_VALUE) << path;
    DWORD written = 0;
    EXPECT_TRUE(
        WriteFile(file, content.data(), static_cast<DWORD>(content.size()), &written, nullptr));
    const FILETIME stamp = SecondsFromNow(1);
    EXPECT_TRUE(SetFileTime(file, nullptr, nullptr, &stamp));
    CloseHandle(file);
}

bool Readable(SOCKET socket, DWORD limitMs) {
    fd_set set;
    FD_ZERO(&set);
    set.fd_array[set.fd_count++] = socket;
    timeval limit{static_cast<long>(limitMs / 1000), static_cast<long>(limitMs % 1000 * 1000)};
    return select(0, &set, nullptr, nullptr, &limit) == 1;
}

std::string Element(const char* tag, const std::string& text) {
    return std::string("<") + tag + ">" + text + "</" + tag + ">\n";
}

}  // namespace

std::string HealthReport::Document() const {
    std::string text =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<HLXHealthResult version=\"1.0\">\n";
    text += Element("AutoInstall", autoInstall) + Element("Enabled", enabled) +
            Element("HealthState", state) + Element("DisplayHealthIcon", displayIcon);
    if (!message.empty()) text += "<Message popup=\"true\">" + message + "</Message>\n";
    if (!page.empty()) text += "<Browser popup=\"true\" url=\"" + page + "\"/>\n";
    return text + "</HLXHealthResult>\n";
}

Listener::Listener(Transport transport) : transport_(transport) {
    WSADATA sockets;
    WSAStartup(MAKEWORD(2, 2), &sockets);
    socket_ = socket(AF_INET, transport, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(transport == kUdp ? 30022 : 30024);
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

Agent::Agent() {
    Unregister();
    char temporary[MAX_PATH];
    GetTempPathA(MAX_PATH, temporary);
    directory_ = std::string(temporary) + "vh_tray e2e\\";
    CreateDirectoryA(directory_.c_str(), nullptr);
    SetValue(kAgentKey, "", REG_SZ, directory_.c_str(), directory_.size() + 1);
}

Agent::~Agent() {
    Unregister();
    for (const char* name : {"healthnotif.txt", "healthnotif.new", "swcache", "LIBEXPAT.dll"})
        DeleteFileA((directory_ + name).c_str());
    RemoveDirectoryA(directory_.c_str());
}

void Agent::Write(const std::string& name, const std::string& content) const {
    WriteStamped(directory_ + name, content);
}

void Agent::Replace(const std::string& name, const std::string& content) const {
    const std::string fresh = directory_ + "healthnotif.new";
    WriteStamped(fresh, content);
    EXPECT_TRUE(MoveFileExA(fresh.c_str(), (directory_ + name).c_str(), MOVEFILE_REPLACE_EXISTING));
}

void Agent::Offer(const std::string& name, const std::string& version) const {
    Write("swcache", name + ":" + version + ":third:fourth\n");
}

void Agent::UseTcp(DWORD value) const {
    SetValue(kAgentKey, "UseTCP", REG_DWORD, &value, sizeof value);
}

void Agent::Record(const char* key, const std::string& file, DWORD result, DWORD age) const {
    const struct {
        FILETIME time;
        DWORD result;
    } record{SecondsFromNow(-static_cast<LONGLONG>(age)), result};
    SetValue((std::string(kAgentKey) + key).c_str(), file, REG_BINARY, &record, sizeof record);
}

void Agent::RegisterSheetLibrary(const std::string& path) const {
    SetValue(kSheetsKey, kSheetValue, REG_SZ, path.c_str(), path.size() + 1);
}

void Agent::Unregister() const {
    RegDeleteTreeA(HKEY_LOCAL_MACHINE, kAgentKey);
    RegDeleteKeyValueA(HKEY_LOCAL_MACHINE, kSheetsKey, kSheetValue);
}
