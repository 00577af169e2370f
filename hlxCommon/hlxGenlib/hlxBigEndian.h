// Loads and stores the big-endian numbers of frames and records, at any alignment.
#pragma once

#include <cstdint>

inline void hlx_storeBig32(std::uint8_t* to, std::uint32_t value) {
    to[0] = static_cast<std::uint8_t>(value >> 24);
    to[1] = static_cast<std::uint8_t>(value >> 16);
    to[2] = static_cast<std::uint8_t>(value >> 8);
    to[3] = static_cast<std::uint8_t>(value);
}

inline std::uint32_t hlx_loadBig32(const std::uint8_t* from) {
    return static_cast<std::uint32_t>(from[0]) << 24 | static_cast<std::uint32_t>(from[1]) << 16 |
           static_cast<std::uint32_t>(from[2]) << 8 | from[3];
}
