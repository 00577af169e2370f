#include "kernel/narrow_text.h"

namespace win32 {
namespace {

void AppendNarrow(std::string& narrow, char32_t code) {
    if ((code >= 0xD800 && code < 0xE000) || code > 0x10FFFF) code = 0xFFFD;
    const int tail = code < 0x80 ? 0 : code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
    constexpr unsigned kLead[] = {0, 0xC0, 0xE0, 0xF0};
    narrow.push_back(static_cast<char>(kLead[tail] | (code >> (6 * tail))));
    for (int left = tail; left-- > 0;)
        narrow.push_back(static_cast<char>(0x80 | ((code >> (6 * left)) & 0x3F)));
}

}  // namespace

std::string NarrowText(std::u16string_view wide) {
    std::string narrow;
    for (std::size_t i = 0; i < wide.size(); ++i) {
        char32_t code = wide[i];
        const bool pair = code >= 0xD800 && code < 0xDC00 && i + 1 < wide.size() &&
                          wide[i + 1] >= 0xDC00 && wide[i + 1] < 0xE000;
        if (pair) code = 0x10000 + ((code - 0xD800) << 10) + (wide[++i] - 0xDC00u);
        AppendNarrow(narrow, code);
    }
    return narrow;
}

}  // namespace win32
