// The registry key of the agent, under HKEY_LOCAL_MACHINE.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

// Its default value is the agent's directory.
constexpr char kHlxAgentKey[] = "SOFTWARE\\Corvane Systems\\TessaraLink";

// Gives the path of a file in the agent's directory. Without a directory, or with one of 2048 bytes
// and more, it is the bare file name. References to the environment are not expanded. Throws
// std::bad_alloc.
std::string hlx_agentFile(const char* fileName);

// Gives the key's value UseTCP, 0 if it is missing; nothing if the key cannot be opened.
std::optional<std::int32_t> hlx_readUseTcp();
