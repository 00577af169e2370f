#include "src/narrow_text.h"

namespace win32 {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

void AppendNarrow(std::string& narrow, char32_t code) {
    if ((code >= 0xD800 && code < 0xE000) || code > 0x10FFFF) code = kReplacement;
    const int tail = code < 0x80 ? 0 : code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
    constexpr unsigned kLead[] = {0, 0xC0, 0xE0, 0xF0};
    narrow.push_back(static_cast<char>(kLead[tail] | (code >> (6 * tail))));
    for (int left = tail; left-- > 0;)
        narrow.push_back(static_cast<char>(0x80 | ((code >> (6 * left)) & 0x3F)));
}

void AppendWide(std::u16string& wide, char32_t code) {
    if (code < 0x10000) {
        wide.push_back(static_cast<char16_t>(code));
        return;
    }
    wide.push_back(static_cast<char16_t>(0xD800 + ((code - 0x10000) >> 10)));
    wide.push_back(static_cast<char16_t>(0xDC00 + (code & 0x3FF)));
}

// The character that `narrow` begins with; takes its bytes away, at least one.
char32_t TakeCharacter(std::string_view& narrow) {
    const auto lead = static_cast<unsigned char>(narrow.front());
    const std::size_t tail = lead < 0x80   ? 0
                             : lead < 0xC2 ? 4
                             : lead < 0xE0 ? 1
                             : lead < 0xF0 ? 2
                                           : 3;
    char32_t code = tail == 0 ? lead : lead & (0x3Fu >> tail);
    narrow.remove_prefix(1);
    if (tail > narrow.size() || tail == 4) return kReplacement;
    for (std::size_t i = 0; i < tail; ++i) {
        if ((narrow[i] & 0xC0) != 0x80) return kReplacement;
        code = code << 6 | (narrow[i] & 0x3F);
    }
    narrow.remove_prefix(tail);
    return code > 0x10FFFF ? kReplacement : code;
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

std::string NarrowText(std::wstring_view wide) {
    std::string narrow;
    for (const wchar_t code : wide) AppendNarrow(narrow, static_cast<char32_t>(code));
    return narrow;
}

std::u16string WideText(std::string_view narrow) {
    std::u16string wide;
    while (!narrow.empty()) AppendWide(wide, TakeCharacter(narrow));
    return wide;
}

}  // namespace win32
