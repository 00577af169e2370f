#include "terminal/drawing.h"

#include <algorithm>
#include <numeric>

namespace terminal {
namespace {

constexpr std::size_t kTextWidth = 64;  // longer texts are broken
constexpr std::size_t kCellWidth = 40;  // longer cells are cut
constexpr std::size_t kShownRows = 20;  // longer lists are cut
constexpr LONG kSameRow = 6;            // pixels by which controls of one row may differ in height
constexpr std::string_view kGap = "   ";  // between buttons, between columns

// Each byte takes a column, except the continuation bytes of UTF-8.
bool TakesColumn(char c) { return (c & 0xc0) != 0x80; }

std::size_t Width(std::string_view text) {
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), TakesColumn));
}

// The text's first columns, `width` of them at most.
std::string_view Cut(std::string_view text, std::size_t width) {
    const auto end = std::find_if(text.begin(), text.end(),
                                  [&](char c) { return TakesColumn(c) && width-- == 0; });
    return text.substr(0, static_cast<std::size_t>(end - text.begin()));
}

std::string Padded(std::string text, std::size_t width) {
    return text.append(width - std::min(width, Width(text)), ' ');
}

std::string Repeated(std::string_view piece, std::size_t times) {
    std::string text;
    for (; times > 0; --times) text += piece;
    return text;
}

std::size_t WidthOf(const Lines& lines) {
    std::size_t width = 0;
    for (const std::string& line : lines) width = std::max(width, Width(line));
    return width;
}

void Append(Lines& lines, const Lines& more) {
    lines.insert(lines.end(), more.begin(), more.end());
}

// One paragraph, broken at spaces.
void Wrap(std::string_view paragraph, Lines& lines) {
    while (Width(paragraph) > kTextWidth) {
        const std::size_t full = Cut(paragraph, kTextWidth).size();
        const std::size_t blank = paragraph.rfind(' ', full);
        const bool breaks = blank != std::string_view::npos && blank > 0;
        lines.emplace_back(paragraph.substr(0, breaks ? blank : full));
        paragraph.remove_prefix(breaks ? blank + 1 : full);
    }
    lines.emplace_back(paragraph);
}

Lines Wrapped(std::string_view text) {
    Lines lines;
    for (;;) {
        const std::size_t end = text.find('\n');
        std::string_view paragraph = text.substr(0, end);
        if (!paragraph.empty() && paragraph.back() == '\r') paragraph.remove_suffix(1);
        Wrap(paragraph, lines);
        if (end == std::string_view::npos) return lines;
        text.remove_prefix(end + 1);
    }
}

Lines Framed(const std::string& title, const Lines& content) {
    const std::size_t width = std::max(WidthOf(content), Width(title) + 2);
    const std::string head = title.empty() ? "" : "─ " + title + " ";
    Lines lines{"┌" + head + Repeated("─", width + 2 - Width(head)) + "┐"};
    for (const std::string& line : content) lines.push_back("│ " + Padded(line, width) + " │");
    lines.push_back("└" + Repeated("─", width + 2) + "┘");
    return lines;
}

std::string_view Sign(UINT icon) {
    switch (icon) {
        case MB_ICONINFORMATION:
            return "(i)  ";
        case MB_ICONEXCLAMATION:
            return "(!)  ";
        case MB_ICONERROR:
            return "(x)  ";
        case MB_ICONQUESTION:
            return "(?)  ";
        default:
            return "";
    }
}

std::string Button(const std::string& text, bool isDefault, bool enabled) {
    if (!enabled) return "( " + text + " )";
    return isDefault ? "[[ " + text + " ]]" : "[ " + text + " ]";
}

std::string Title(const desktop::Column& column) {
    switch (column.arrow) {
        case desktop::Arrow::kUp:
            return column.title + " ▲";
        case desktop::Arrow::kDown:
            return column.title + " ▼";
        case desktop::Arrow::kNone:
            break;
    }
    return column.title;
}

std::string Cell(const std::string& text) {
    const std::string line = InOneLine(text);
    if (Width(line) <= kCellWidth) return line;
    return std::string(Cut(line, kCellWidth - 1)) + "…";
}

std::string TableRow(const Lines& cells, const std::vector<std::size_t>& widths, bool selected) {
    std::string line = selected ? "> " : "  ";
    for (std::size_t at = 0; at < cells.size(); ++at)
        line.append(Padded(cells[at], widths[at])).append(kGap);
    return line.substr(0, line.find_last_not_of(' ') + 1);
}

Lines DrawList(const desktop::List& list) {
    const std::size_t shown = std::min(list.rows.size(), kShownRows);
    std::vector<Lines> table(1);
    for (const desktop::Column& column : list.columns) table[0].push_back(Title(column));
    for (std::size_t row = 0; row < shown; ++row) {
        table.emplace_back();
        for (const std::string& text : list.rows[row]) table.back().push_back(Cell(text));
    }

    std::vector<std::size_t> widths(list.columns.size());
    for (const Lines& cells : table)
        for (std::size_t at = 0; at < widths.size() && at < cells.size(); ++at)
            widths[at] = std::max(widths[at], Width(cells[at]));
    const std::size_t gaps = kGap.size() * (widths.empty() ? 0 : widths.size() - 1);
    const std::size_t all = std::accumulate(widths.begin(), widths.end(), gaps);

    Lines lines{TableRow(table[0], widths, false), "  " + Repeated("─", all)};
    for (std::size_t row = 0; row < shown; ++row)
        lines.push_back(TableRow(table[row + 1], widths, list.selected == static_cast<int>(row)));
    if (list.rows.empty()) lines.push_back("  (empty)");
    if (shown < list.rows.size())
        lines.push_back("  … and " + std::to_string(list.rows.size() - shown) + " more");
    return lines;
}

Lines DrawControls(const desktop::Dialog& dialog);

// A control or a page of the dialog, as a block of lines at its place.
struct Block {
    RECT place;
    Lines lines;
};

Block DrawControl(const desktop::Control& control) {
    if (control.list) return {control.place, DrawList(*control.list)};
    if (control.className == "Button")
        return {control.place, {Button(control.text, control.isDefault, control.enabled)}};
    return {control.place, Wrapped(control.text)};
}

std::vector<Block> BlocksOf(const desktop::Dialog& dialog) {
    std::vector<Block> blocks;
    for (const desktop::Control& control : dialog.controls)
        if (control.visible) blocks.push_back(DrawControl(control));
    for (const desktop::Dialog& page : dialog.pages)
        blocks.push_back({page.place, Framed(page.caption, DrawControls(page))});
    std::stable_sort(blocks.begin(), blocks.end(), [](const Block& left, const Block& right) {
        return left.place.top != right.place.top ? left.place.top < right.place.top
                                                 : left.place.left < right.place.left;
    });
    return blocks;
}

// From top to bottom; single lines at one height are joined.
Lines DrawControls(const desktop::Dialog& dialog) {
    Lines lines;
    LONG top = 0;
    bool joins = false;
    for (const Block& block : BlocksOf(dialog)) {
        const bool single = block.lines.size() == 1;
        if (joins && single && block.place.top - top < kSameRow) {
            lines.back().append(kGap).append(block.lines.front());
            continue;
        }
        if (!lines.empty()) lines.emplace_back();
        Append(lines, block.lines);
        top = block.place.top;
        joins = single;
    }
    return lines;
}

}  // namespace

std::string InOneLine(std::string_view text) {
    std::string line;
    bool broken = false;
    for (const char c : text) {
        if (c == '\r' || c == '\n') {
            broken = true;
            continue;
        }
        if (broken && !line.empty()) line += " | ";
        broken = false;
        line += c;
    }
    return line;
}

Lines Draw(const desktop::Icon& icon) {
    return {std::to_string(icon.id) + "  " + InOneLine(icon.tip)};
}

Lines Draw(const desktop::Box& box) {
    Lines content;
    std::string sign(Sign(box.icon));
    for (const std::string& line : Wrapped(box.text)) {
        content.push_back(sign + line);
        sign.assign(sign.size(), ' ');
    }
    content.emplace_back();
    std::string buttons;
    for (const std::string& button : box.buttons)
        buttons.append(buttons.empty() ? "" : kGap).append(Button(button, buttons.empty(), true));
    content.push_back(buttons);
    return Framed(box.caption, content);
}

Lines Draw(const desktop::Dialog& dialog) { return Framed(dialog.caption, DrawControls(dialog)); }

Lines Draw(const desktop::Menu& menu) {
    Lines content;
    for (const desktop::MenuItem& item : menu.items)
        content.push_back((item.isDefault ? "* " : "  ") + item.text);
    return Framed("", content);
}

}  // namespace terminal
