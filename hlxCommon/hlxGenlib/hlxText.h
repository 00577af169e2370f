// Comparison of byte strings, independent of the locale.
#pragma once

#include <algorithm>
#include <string_view>

// Whether both strings are equal. The case of the letters A to Z is ignored.
inline bool hlx_sameIgnoringCase(std::string_view left, std::string_view right) {
    const auto lower = [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    };
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [lower](char a, char b) { return lower(a) == lower(b); });
}
