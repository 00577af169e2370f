// What the stand-in can be told to do, on the command line or while it listens.
#pragma once

#include <string>

#include "Arguments.h"

namespace agent_sim {

// The whole of --help.
std::string HelpText();

// The verbs alone, for a user who is at the prompt.
std::string VerbsText();

// Carries out the request that begins with the verb. Throws UsageError for what it does not
// understand, and other std::exceptions for what cannot be done.
void Execute(Arguments arguments);

}  // namespace agent_sim
