// The commands of agent_sim, on its command line or while it listens.
#pragma once

#include <functional>
#include <string>

#include "Arguments.h"

namespace agent_sim {

// The text of --help.
std::string HelpText();

// The part of it that lists the commands.
std::string VerbsText();

// Carries out a request. Throws a std::exception if that fails.
using Action = std::function<void()>;

// Parses a complete request, without carrying it out. Throws UsageError if it is not valid.
Action Understand(Arguments arguments);

}  // namespace agent_sim
