// The agent daemon, as far as the applet can see of it: its directory, its registry keys and its
// ports. Writing to HKEY_LOCAL_MACHINE needs an administrator. Everything is fresh at construction
// and gone at destruction.
#pragma once

#include <winsock2.h>
#include <windows.h>
#include <string>

// What a notification file can say; the defaults show an icon and nothing else.
struct HealthReport {
    std::string state = "high";
    std::string message{};
    std::string page{};
    std::string autoInstall = "yes";
    std::string enabled = "true";
    std::string displayIcon = "true";

    std::string Document() const;
};

// A port of the daemon on 127.0.0.1.
class Listener {
public:
    enum Transport { kUdp = SOCK_DGRAM, kTcp = SOCK_STREAM };

    explicit Listener(Transport transport);
    ~Listener();
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    // The bytes of one frame, or nothing when none came within the limit.
    std::string Receive(DWORD limitMs) const;

private:
    Transport transport_;
    SOCKET socket_;
};

// The frame of a command without data.
std::string FrameOf(char command);

class Agent {
public:
    Agent();
    ~Agent();
    Agent(const Agent&) = delete;
    Agent& operator=(const Agent&) = delete;

    const std::string& Directory() const { return directory_; }
    std::string HealthPath() const { return directory_ + "healthnotif.txt"; }

    // Writes a file of the directory in place; the applet's watcher takes it for changed.
    void Write(const std::string& name, const std::string& content) const;
    // The same by a new file that takes the place of the old one.
    void Replace(const std::string& name, const std::string& content) const;
    void Report(const HealthReport& report) const { Write("healthnotif.txt", report.Document()); }
    void Offer(const std::string& name, const std::string& version) const;

    void UseTcp(DWORD value) const;
    // Results of `ageSeconds` ago; the name is that of the file.
    void RecordInstall(const std::string& file, DWORD result, DWORD ageSeconds = 0) const {
        Record("\\updates\\results", file, result, ageSeconds);
    }
    void RecordDownload(const std::string& file, DWORD result, DWORD ageSeconds = 0) const {
        Record("\\downloads", file, result, ageSeconds);
    }
    void RegisterSheetLibrary(const std::string& path) const;
    void Unregister() const;

private:
    void Record(const char* key, const std::string& file, DWORD result, DWORD age) const;

    std::string directory_;
};
