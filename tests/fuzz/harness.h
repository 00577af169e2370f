// What the harnesses share.
#pragma once

#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <span>
#include <string>
#include <vector>

using Bytes = std::span<const std::uint8_t>;

// Passes the input to a reader. Each harness defines it.
void Fuzz(Bytes input);

// Ends the program if the reader has not kept its contract.
inline void Require(bool isMet) {
    if (!isMet) std::abort();
}

inline std::string Text(Bytes bytes) { return {bytes.begin(), bytes.end()}; }

// A path in memory for this process, and a file of any bytes.
inline std::string ScratchPath() { return "/dev/shm/fuzz-" + std::to_string(getpid()); }

inline void WriteBytes(const std::string& path, Bytes bytes) {
    std::ofstream(path, std::ios::binary) << Text(bytes);
}
