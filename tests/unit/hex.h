// Converts bytes to hexadecimal text, two digits each, and back, so that a test can state expected
// bytes as text.
#pragma once

inline std::string Hex(const void* bytes, std::size_t size) {
    std::string text;
    for (std::size_t i = 0; i < size; ++i) {
        char digits[4];
        std::snprintf(digits, sizeof digits, "%s%02X", i ? " " : "",
                      static_cast<const std::uint8_t*>(bytes)[i]);
        text += digits;
    }
    return text;
}

inline const std::uint8_t* B(const char* text) {
    return reinterpret_cast<const std::uint8_t*>(text);
}
