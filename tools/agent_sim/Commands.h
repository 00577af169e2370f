// What the stand-in can be told to do, on the command line or while it listens.
#pragma once

#include <functional>
#include <string>

#include "Arguments.h"

namespace agent_sim {

// The whole of --help.
std::string HelpText();

// The verbs alone, for a user who is at the prompt.
std::string VerbsText();

// What is to be done for a request. May throw std::exceptions of its own for what cannot be done.
using Action = std::function<void()>;

// Understands the request that begins with the verb, whole; nothing is done yet. Throws UsageError
// for what it does not understand.
Action Understand(Arguments arguments);

}  // namespace agent_sim
