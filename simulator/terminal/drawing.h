// The desktop, drawn as lines of text.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "simulator/desktop.h"

namespace terminal {

using Lines = std::vector<std::string>;

Lines Draw(const desktop::Icon& icon);
Lines Draw(const desktop::Box& box);
Lines Draw(const desktop::Dialog& dialog);
Lines Draw(const desktop::Menu& menu);

// The text in one line: runs of line ends become " | ".
std::string InOneLine(std::string_view text);

}  // namespace terminal
