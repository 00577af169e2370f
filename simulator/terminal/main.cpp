// Runs the program on the simulated desktop. The terminal is the screen, and each line of standard
// input is one user action.
//
// At a terminal there is a prompt, and an action that finds nothing to act on says so. A script is
// repeated line by line, and the first action that fails ends the run. The end of the input logs
// the user off. The exit code of the process is the program's, or kCommandFailed.
#include <poll.h>
#include <unistd.h>

#include <array>
#include <optional>
#include <string>

#include "simulator/session.h"
#include "terminal/commands.h"
#include "terminal/screen.h"

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int);

namespace terminal {
namespace {

constexpr int kCommandFailed = 70;

// Standard input line by line, without reading ahead of what is there.
class Input {
public:
    // Whether a line can be taken, or the end, without blocking.
    bool HasLine() const { return m_ended || m_text.find('\n') != std::string::npos; }

    // To be called when the input is readable.
    void Fill() {
        std::array<char, 4096> piece;
        const ssize_t size = read(STDIN_FILENO, piece.data(), piece.size());
        if (size > 0)
            m_text.append(piece.data(), static_cast<std::size_t>(size));
        else
            m_ended = true;
    }

    // Nothing at the end.
    std::optional<std::string> TakeLine() {
        if (m_text.empty()) return std::nullopt;
        const std::size_t end = m_text.find('\n');
        std::string line = m_text.substr(0, end);
        m_text.erase(0, end == std::string::npos ? end : end + 1);
        return line;
    }

private:
    std::string m_text;
    bool m_ended = false;
};

// The next line of the input; meanwhile shows what happens. Nothing at the end of input or program.
std::optional<std::string> NextLine(Input& input, Screen& screen) {
    while (!input.HasLine()) {
        std::array<pollfd, 2> sources{{{STDIN_FILENO, POLLIN, 0}, {screen.Pending(), POLLIN, 0}}};
        poll(sources.data(), sources.size(), -1);
        if (sources[1].revents) screen.Refresh();
        if (screen.HasEnded()) return std::nullopt;
        if (sources[0].revents) input.Fill();
    }
    return input.TakeLine();
}

// A script's lines are repeated, with a blank line above its headings.
void Repeat(const std::string& line, Screen& screen) {
    if (line.empty()) return;
    if (line.front() == '#')
        screen.Print(Lines{"", line});
    else
        screen.Print("> " + line);
}

// Executes the commands. False if one failed in a script.
bool ExecuteCommands(Screen& screen, bool interactive) {
    Input input;
    while (const auto line = NextLine(input, screen)) {
        if (!interactive) Repeat(*line, screen);
        const Done done = DoLine(*line, screen);
        screen.Refresh();
        if (done.quits) return true;
        screen.Print(done.whyNot.empty() ? Lines{} : Lines{"? " + done.whyNot});
        if (!done.whyNot.empty() && !interactive) return false;
        if (screen.HasEnded()) return true;
    }
    return true;
}

int Main() {
    const bool interactive = isatty(STDIN_FILENO) != 0;
    Screen screen(interactive);
    desktop::Session session(
        [] { return WinMain(GetModuleHandleA(nullptr), nullptr, nullptr, SW_SHOWNORMAL); });
    if (interactive) screen.Print("The simulated desktop. 'help' lists the commands.");
    const bool went = ExecuteCommands(screen, interactive);
    const int exitCode = session.End();
    screen.Refresh();
    return went ? exitCode : kCommandFailed;
}

}  // namespace
}  // namespace terminal

int main() { return terminal::Main(); }
