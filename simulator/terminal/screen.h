// The terminal as the screen of the simulated desktop: prints what happens there, an event a line,
// and draws what opens.
#pragma once

#include <chrono>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/desktop.h"
#include "terminal/drawing.h"

namespace terminal {

// All operations but the subscriber's belong to one thread, the one that executes the commands.
class Screen {
public:
    // `prompts`: the input is a user's, so a prompt follows what was printed last.
    explicit Screen(bool prompts);
    ~Screen();
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;

    // Becomes readable when something has happened that is not printed yet.
    int Pending() const { return m_pending; }

    // Prints what has happened so far.
    void Refresh();

    // Whether the program on the desktop has ended.
    bool HasEnded() const { return m_ended; }

    // Waits, printing, until an event's line holds `text`, beginning behind the event that was
    // waited for last. False if the time has run out or the program has ended.
    bool WaitFor(std::string_view text, std::chrono::milliseconds limit);

    void Print(const Lines& lines);
    void Print(const std::string& line) { Print(Lines{line}); }
    // Draws the whole desktop.
    void ShowAll();

private:
    std::string Describe(const desktop::Event& event);
    void DrawOpened(const desktop::Event& event);

    const bool m_prompts;
    const int m_pending;  // an event counter of the system
    std::mutex m_mutex;
    std::vector<desktop::Event> m_happened;  // not printed yet; under the mutex
    Lines m_printed;                         // of the events
    std::size_t m_waitedFor = 0;             // events that no wait has to check again
    std::vector<desktop::MenuItem> m_menu;   // of the menu opened last
    bool m_ended = false;
};

}  // namespace terminal
