// The registry key of the agent, under HKEY_LOCAL_MACHINE.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

// Its default value is the agent's directory.
constexpr char kHlxAgentKey[] = "SOFTWARE\\Corvane Systems\\TessaraLink";

// Gives the agent's directory as it stands in the key, references to the environment not expanded
// and with or without a separator at its end; empty if there is none of a text type.
std::string hlx_agentDirectory();

// Gives the key's value UseTCP, 0 if it is missing; nothing if the key cannot be opened.
std::optional<std::int32_t> hlx_readUseTcp();
