// How the A functions copy a text to a buffer that may be too small for it.
#pragma once

#include <windows.h>

#include <algorithm>
#include <cstring>
#include <string>

namespace user {

// Copies a text, truncated to `capacity` bytes with the terminator; returns the number of bytes
// before it.
inline int CopyCut(const std::string& text, LPSTR to, int capacity) {
    if (!to || capacity <= 0) return 0;
    const std::size_t length = std::min(text.size(), static_cast<std::size_t>(capacity) - 1);
    std::memcpy(to, text.data(), length);
    to[length] = '\0';
    return static_cast<int>(length);
}

}  // namespace user
