#include "terminal/screen.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>

namespace terminal {
namespace {

using desktop::EventKind;

constexpr int kSubjectWidth = 17;
constexpr char kClearLine[] = "\r\033[K";
constexpr char kPrompt[] = "> ";

const char* Subject(EventKind kind) {
    switch (kind) {
        case EventKind::kIconAdded:
            return "icon added";
        case EventKind::kIconChanged:
            return "icon changed";
        case EventKind::kIconRemoved:
            return "icon removed";
        case EventKind::kBalloon:
            return "balloon";
        case EventKind::kBoxOpened:
            return "box opened";
        case EventKind::kBoxClosed:
            return "box closed";
        case EventKind::kDialogOpened:
            return "dialog opened";
        case EventKind::kDialogClosed:
            return "dialog closed";
        case EventKind::kMenuOpened:
            return "menu opened";
        case EventKind::kMenuClosed:
            return "menu closed";
        case EventKind::kPageOpened:
            return "page opened";
        case EventKind::kRebootRequested:
            return "reboot requested";
        case EventKind::kBroughtForward:
            return "brought forward";
        case EventKind::kEnded:
            return "ended";
    }
    return "";
}

// The answer that closed a box or dialog.
std::string Answer(UINT id) {
    constexpr std::array<const char*, 8> kNames = {"",      "OK",     "Cancel", "Abort",
                                                   "Retry", "Ignore", "Yes",    "No"};
    if (id == 0) return "";
    return std::string(", ") + (id < kNames.size() ? kNames[id] : std::to_string(id));
}

// Removes control characters, so that the texts of a program do not control the terminal.
std::string Harmless(std::string line) {
    const auto steers = [](unsigned char c) { return c < ' ' || c == 0x7f; };
    std::replace(line.begin(), line.end(), '\t', ' ');
    std::replace_if(line.begin(), line.end(), steers, '?');
    return line;
}

bool IsShown(const std::vector<desktop::Dialog>& dialogs, std::string_view caption) {
    return std::any_of(dialogs.begin(), dialogs.end(), [&](const desktop::Dialog& dialog) {
        return dialog.caption == caption || IsShown(dialog.pages, caption);
    });
}

// A hidden window that is brought forward is not visible to the user.
bool IsSeen(const desktop::Event& event) {
    return event.kind != EventKind::kBroughtForward || IsShown(desktop::Dialogs(), event.text);
}

std::string JoinedTexts(const desktop::Event& event) {
    const std::string text = InOneLine(event.text);
    const std::string more = InOneLine(event.more);
    return more.empty() ? text : text + " | " + more;
}

}  // namespace

Screen::Screen(bool prompts)
    : m_prompts(prompts), m_pending(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    desktop::Subscribe([this](const desktop::Event& event) {
        const std::lock_guard lock(m_mutex);
        m_happened.push_back(event);
        const std::uint64_t one = 1;
        // Cannot fail: the counter is below its limit.
        if (write(m_pending, &one, sizeof one) != sizeof one) return;
    });
}

Screen::~Screen() {
    desktop::Subscribe(nullptr);
    close(m_pending);
}

void Screen::Print(const Lines& lines) {
    std::string text = m_prompts ? kClearLine : "";
    for (const std::string& line : lines) text.append(Harmless(line)).append("\n");
    if (m_prompts && !m_ended) text += kPrompt;
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
}

std::string Screen::Describe(const desktop::Event& event) {
    std::string text;
    switch (event.kind) {
        case EventKind::kIconAdded:
        case EventKind::kIconChanged:
        case EventKind::kIconRemoved:
        case EventKind::kBalloon:
            text = std::to_string(event.id) + "  " + JoinedTexts(event);
            break;
        case EventKind::kBoxClosed:
        case EventKind::kDialogClosed:
            text = InOneLine(event.text) + Answer(event.id);
            break;
        case EventKind::kMenuClosed: {
            const auto chosen = std::find_if(m_menu.begin(), m_menu.end(),
                                             [&](const auto& item) { return item.id == event.id; });
            text = chosen == m_menu.end() ? "nothing chosen" : chosen->text;
            break;
        }
        case EventKind::kEnded:
            text = "exit code " + std::to_string(event.id);
            break;
        default:
            text = JoinedTexts(event);
    }
    std::string line = Subject(event.kind);
    line.resize(kSubjectWidth, ' ');
    line += text;
    return line.substr(0, line.find_last_not_of(' ') + 1);
}

void Screen::DrawOpened(const desktop::Event& event) {
    if (event.kind == EventKind::kBoxOpened) {
        const auto boxes = desktop::Boxes();
        if (!boxes.empty()) Print(Draw(boxes.front()));
    } else if (event.kind == EventKind::kDialogOpened) {
        if (const auto dialog = desktop::FindDialog(event.text)) Print(Draw(*dialog));
    } else if (event.kind == EventKind::kMenuOpened) {
        if (const auto menu = desktop::OpenMenu()) {
            m_menu = menu->items;
            Print(Draw(*menu));
        }
    }
}

void Screen::Refresh() {
    std::vector<desktop::Event> events;
    {
        const std::lock_guard lock(m_mutex);
        events.swap(m_happened);
        std::uint64_t count;
        // Nothing to read if nothing has happened.
        if (read(m_pending, &count, sizeof count) != sizeof count) return;
    }
    for (const desktop::Event& event : events) {
        if (!IsSeen(event)) continue;
        m_ended = m_ended || event.kind == EventKind::kEnded;
        m_printed.push_back(Describe(event));
        Print(m_printed.back());
        DrawOpened(event);
    }
}

bool Screen::WaitFor(std::string_view text, std::chrono::milliseconds limit) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    for (;;) {
        Refresh();
        for (; m_waitedFor < m_printed.size(); ++m_waitedFor) {
            if (m_printed[m_waitedFor].find(text) == std::string::npos) continue;
            ++m_waitedFor;
            return true;
        }
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(
            deadline - std::chrono::steady_clock::now());
        if (m_ended || left.count() <= 0) return false;
        pollfd something{m_pending, POLLIN, 0};
        poll(&something, 1, static_cast<int>(left.count()));
    }
}

void Screen::ShowAll() {
    Lines lines;
    const auto icons = desktop::Icons();
    lines.push_back(icons.empty() ? "no icon in the notification area" : "notification area");
    for (const desktop::Icon& icon : icons)
        for (const std::string& line : Draw(icon)) lines.push_back("  " + line);
    const auto add = [&](const Lines& drawn) {
        lines.insert(lines.end(), drawn.begin(), drawn.end());
    };
    if (const auto menu = desktop::OpenMenu()) add(Draw(*menu));
    for (const desktop::Box& box : desktop::Boxes()) add(Draw(box));
    for (const desktop::Dialog& dialog : desktop::Dialogs()) add(Draw(dialog));
    Print(lines);
}

}  // namespace terminal
