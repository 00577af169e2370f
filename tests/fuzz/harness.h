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

// Gives 0; ends the program if the reader has not kept what it promises.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

// A path in memory for this process, and a file of any bytes.
inline std::string ScratchPath() { return "/dev/shm/fuzz-" + std::to_string(getpid()); }

inline void WriteBytes(const std::string& path, Bytes bytes) {
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), std::ssize(bytes));
}
