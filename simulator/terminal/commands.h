// Commands: each line of input is one user action.
#pragma once

#include <string>
#include <string_view>

#include "terminal/screen.h"

namespace terminal {

// The result of a line.
struct Done {
    bool quits = false;  // the user logs off
    std::string whyNot;  // why the line could not be carried out; empty: it was
};

// Carries out one line; the empty one and comments ("# ...") do nothing.
Done DoLine(std::string_view line, Screen& screen);

}  // namespace terminal
