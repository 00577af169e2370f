#include "terminal/commands.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cstdlib>
#include <optional>

#include "simulator/desktop.h"

namespace terminal {
namespace {

using desktop::Outcome;

constexpr std::chrono::seconds kUsualWait{15};

std::string_view Trimmed(std::string_view text) {
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.front())))
        text.remove_prefix(1);
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.back())))
        text.remove_suffix(1);
    return text;
}

std::string_view TakeWord(std::string_view& rest) {
    const std::string_view word = rest.substr(0, rest.find(' '));
    rest = Trimmed(rest.substr(word.size()));
    return word;
}

std::optional<int> Number(std::string_view text) {
    int number = 0;
    const auto end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc{} || stop != end) return std::nullopt;
    return number;
}

bool Contains(std::string_view text, std::string_view part) {
    const auto same = [](char a, char b) {
        return std::tolower(static_cast<unsigned char>(a)) ==
               std::tolower(static_cast<unsigned char>(b));
    };
    return std::search(text.begin(), text.end(), part.begin(), part.end(), same) != text.end();
}

// An icon is named by its number or a part of its tooltip; the only icon needs no name.
Outcome WithIcon(std::string_view name, Outcome (*act)(UINT icon)) {
    std::vector<desktop::Icon> icons = desktop::Icons();
    if (icons.empty()) return {"there is no icon"};
    std::erase_if(icons, [&](const desktop::Icon& icon) {
        return std::to_string(icon.id) != name && !Contains(icon.tip, name);
    });
    if (icons.empty()) return {"no icon is called '" + std::string(name) + "'"};
    if (icons.size() > 1) return {"more than one icon fits; take its number or more of its text"};
    return act(icons.front().id);
}

Outcome Move(std::string_view rest, Screen&) {
    std::string_view words = rest;
    const auto x = Number(TakeWord(words));
    const auto y = Number(words);
    if (!x || !y) return WithIcon(rest, desktop::MoveOver);
    desktop::MovePointer(*x, *y);
    return {};
}

Outcome Click(std::string_view icon, Screen&) { return WithIcon(icon, desktop::Click); }
Outcome DoubleClick(std::string_view icon, Screen&) { return WithIcon(icon, desktop::DoubleClick); }
Outcome RightClick(std::string_view icon, Screen&) { return WithIcon(icon, desktop::RightClick); }

Outcome Choose(std::string_view item, Screen&) { return desktop::Choose(item); }
Outcome Dismiss(std::string_view, Screen&) { return desktop::DismissMenu(); }
Outcome Press(std::string_view button, Screen&) { return desktop::Press(button); }
Outcome Close(std::string_view, Screen&) { return desktop::CloseWindow(); }
Outcome Enter(std::string_view, Screen&) { return desktop::PressKey(VK_RETURN); }
Outcome Escape(std::string_view, Screen&) { return desktop::PressKey(VK_ESCAPE); }

// The header that the user means, by its title or its number from 1 on. Draws the list as it is
// then.
Outcome Header(std::string_view name, Screen& screen) {
    const auto dialogs = desktop::Dialogs();
    const desktop::List* list = dialogs.empty() ? nullptr : dialogs.front().FirstList();
    if (!list) return {"there is no list"};
    int column = Number(name).value_or(0) - 1;
    for (std::size_t at = 0; at < list->columns.size(); ++at)
        if (!name.empty() && Contains(list->columns[at].title, name)) column = static_cast<int>(at);
    const Outcome outcome = desktop::ClickHeader(column, dialogs.front().window);
    const auto now = desktop::Dialogs();
    if (outcome && !now.empty()) screen.Print(Draw(now.front()));
    return outcome;
}

Outcome Command(std::string_view text, Screen&) {
    const auto number = Number(text);
    if (!number) return {"a command is a number"};
    return desktop::PostCommand(static_cast<UINT>(*number));
}

// TEXT, or "TEXT" with an optional number of seconds.
Outcome Wait(std::string_view rest, Screen& screen) {
    std::string_view text = rest;
    std::chrono::seconds limit = kUsualWait;
    if (rest.starts_with('"')) {
        const std::size_t end = rest.find('"', 1);
        if (end == std::string_view::npos) return {"a quote is left open"};
        text = rest.substr(1, end - 1);
        if (const std::string_view behind = Trimmed(rest.substr(end + 1)); !behind.empty())
            limit = std::chrono::seconds(Number(behind).value_or(0));
    }
    if (text.empty()) return {"wait needs a text"};
    if (limit.count() <= 0) return {"only a number of seconds may follow the quoted text"};
    if (screen.WaitFor(text, limit)) return {};
    const std::string span =
        screen.HasEnded() ? "to the program's end" : std::to_string(limit.count()) + " s";
    return {"waited " + span + " in vain for '" + std::string(text) + "'"};
}

Outcome Show(std::string_view, Screen& screen) {
    screen.ShowAll();
    return {};
}

// In a shell of its own, which does not read the script.
Outcome Shell(std::string_view command, Screen&) {
    const std::string line = "{ " + std::string(command) + "\n} < /dev/null";
    if (const int status = std::system(line.c_str()); status != 0) return {"the command failed"};
    return {};
}

struct Action {
    std::string_view name;
    std::string_view arguments;
    std::string_view help;
    Outcome (*act)(std::string_view rest, Screen& screen);
};

constexpr std::array<Action, 15> kActions{{
    {"show", "", "draw the desktop", Show},
    {"click", "[ICON]", "an icon, with the left button", Click},
    {"double-click", "[ICON]", "an icon, with the left button", DoubleClick},
    {"right-click", "[ICON]", "an icon, for its menu", RightClick},
    {"move", "ICON | X Y", "the pointer, over an icon or to a place", Move},
    {"choose", "ITEM", "an item of the open menu", Choose},
    {"dismiss", "", "the open menu", Dismiss},
    {"press", "BUTTON", "in the front box or dialog", Press},
    {"enter", "", "the key, in the front box or dialog", Enter},
    {"escape", "", "the key, in the front box or dialog", Escape},
    {"close", "", "the front box or dialog by its close box", Close},
    {"header", "COLUMN", "click a column's header, by title or number", Header},
    {"command", "NUMBER", "post a command, as another program can", Command},
    {"wait", "TEXT | \"TEXT\" SECONDS", "until an event's line holds TEXT (15 seconds)", Wait},
    {"!", "COMMAND", "run a command of the shell", Shell},
}};

void Help(Screen& screen) {
    Lines lines;
    const auto add = [&](std::string_view name, std::string_view arguments, std::string_view help) {
        std::string line = "  " + std::string(name) + " " + std::string(arguments);
        if (!help.empty()) line.resize(std::max<std::size_t>(line.size() + 2, 30), ' ');
        lines.push_back(line.append(help));
    };
    for (const Action& action : kActions) add(action.name, action.arguments, action.help);
    add("quit", "", "log off; so does the end of the input");
    lines.push_back(
        "ICON is an icon's number or a part of its tooltip; the only icon needs neither.");
    screen.Print(lines);
}

}  // namespace

Done DoLine(std::string_view line, Screen& screen) {
    std::string_view rest = Trimmed(line);
    if (rest.empty() || rest.front() == '#') return {};
    std::string_view word = rest.front() == '!' ? rest.substr(0, 1) : rest;
    if (word == "!")
        rest = Trimmed(rest.substr(1));
    else
        word = TakeWord(rest);
    if (word == "quit") return {.quits = true, .whyNot = {}};
    if (word == "help") {
        Help(screen);
        return {};
    }
    const auto action = std::find_if(kActions.begin(), kActions.end(),
                                     [&](const Action& known) { return known.name == word; });
    if (action == kActions.end())
        return {.whyNot = "'" + std::string(word) + "' is no command; help lists them"};
    return {.whyNot = action->act(rest, screen).whyNot};
}

}  // namespace terminal
