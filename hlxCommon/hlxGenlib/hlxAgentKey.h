// Reads the agent's registry key (HLX_AGENT_KEY in hlxInterface.h).
#pragma once

#include <cstdint>
#include <optional>
#include <string>

// Returns the path of a file in the agent's directory. Without a directory, or with one of 2048
// bytes and more, it is the bare file name. Environment references are not expanded. Throws
// std::bad_alloc.
std::string hlx_agentFile(const char* fileName);

// Returns the key's value UseTCP, 0 if it is missing; nothing if the key cannot be opened.
std::optional<std::int32_t> hlx_readUseTcp();
