// Bytes as hexadecimal text, two digits each, and a text as bytes.
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
