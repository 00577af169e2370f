// The journal: what happens on the simulated desktop, in order.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace simulator {

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

// The journal keeps this many events, the last ones.
constexpr std::size_t kLongestJournal = 1000;

// Adds an event and calls the subscriber. Called without the state lock.
void Record(Event event);

// The events since the process began or ForgetEvents was called, oldest first.
std::vector<Event> Events();
void ForgetEvents();

// Calls `subscriber` with each event, in order, on the thread on which it happens. It must call
// neither inspection nor input. Null ends the subscription.
void SubscribeEvents(std::function<void(const Event&)> subscriber);

// Waits until an event is recorded or `limit` has passed by the real clock.
void AwaitEvent(std::chrono::milliseconds limit);

}  // namespace simulator
