// What happens on the simulated desktop, in order, for whoever looks on.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace machine {

enum class EventKind {
    kIconAdded,
    kIconChanged,
    kIconRemoved,
    kBalloon,
    kBoxOpened,
    kBoxClosed,
    kDialogOpened,
    kDialogClosed,
    kMenuOpened,
    kMenuClosed,
    kPageOpened,
    kRebootRequested,
    kBroughtForward,
    kEnded,
};

struct Event {
    EventKind kind;
    std::uint32_t id = 0;  // icon; chosen command, 0 for none; exit code; flags of the reboot
    std::string text;      // tooltip, balloon title, caption or address
    std::string more;      // text of the balloon or box

    bool operator==(const Event&) const = default;
};

// Adds an event and calls the subscriber. Called without the lock of the world.
void Record(Event event);

// Everything since the process began or ForgetEvents was called.
std::vector<Event> Events();
void ForgetEvents();

// Calls `subscriber` with each event, in order, on the thread on which it happens. It must neither
// look at the desktop nor act on it. Null ends the subscription.
void SubscribeEvents(std::function<void(const Event&)> subscriber);

// Waits until an event is recorded or `limit` has passed by the real clock.
void AwaitEvent(std::chrono::milliseconds limit);

}  // namespace machine
