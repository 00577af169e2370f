// The agent daemon as far as the applet can see it: the home of the stand-in, and the daemon's
// ports. Writing to HKEY_LOCAL_MACHINE needs an administrator.
#pragma once

#include <winsock2.h>
#include <windows.h>

#include <filesystem>
#include <string>

#include "Notification.h"

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

// An installed agent. Its directory and its keys are new at construction and removed at
// destruction.
class Agent {
public:
    explicit Agent(bool useTcp = false, const std::string& controlPanelApplet = {});
    ~Agent();
    Agent(const Agent&) = delete;
    Agent& operator=(const Agent&) = delete;

    std::string Directory() const { return directory_.string() + "\\"; }

    // Writes a health notification. Its message and its page pop up if they are not empty.
    void Report(agent_sim::Notification notification) const;
    void Offer(const std::string& name, const std::string& version) const;

private:
    const std::filesystem::path directory_;
};
