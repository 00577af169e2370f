// The agent daemon as far as the applet can see it. Writing to HKEY_LOCAL_MACHINE needs an
// administrator.
#pragma once

#include "FrameListener.h"
#include "Daemon.h"
#include "Notification.h"

// An installed agent that listens on the daemon's ports. Its directory and its keys are new at
// construction and removed at destruction.
class Agent {
public:
    explicit Agent(bool useTcp = false);
    ~Agent();

    // Writes a health notification. Its message and its page pop up if they are not empty.
    void Report(agent_sim::Notification notification) const;

    // Removes and returns the frames that have come, each as transport and command ("UDP 4 "), once
    // there is one or the limit for effects without a delay has passed.
    std::string Receive();

private:
    const std::filesystem::path directory_;
    std::mutex mutex_;
    std::string frames_;
    const agent_sim::SocketsInUse sockets_;
    const agent_sim::FrameListener listener_;
};
