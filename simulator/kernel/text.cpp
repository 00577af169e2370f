// Texts: comparison in the order of a language, and C runtime functions that POSIX has under other
// names.
#include <cctype>
#include <cstring>
#include <string>
#include <string_view>

#include "core/last_error.h"
#include "mbstring.h"
#include "winbase.h"

namespace {

// Punctuation sorts before digits and digits before letters, which sort without regard to case.
int Rank(char c) {
    const int byte = static_cast<unsigned char>(c);
    if (byte >= 0x80) return 0x300 + byte;
    if (std::isalpha(byte)) return 0x200 + std::tolower(byte);
    if (std::isdigit(byte)) return 0x100 + byte;
    return byte;
}

int CompareRanks(std::string_view left, std::string_view right) {
    for (std::size_t i = 0; i < left.size() && i < right.size(); ++i)
        if (const int order = Rank(left[i]) - Rank(right[i])) return order < 0 ? -1 : 1;
    if (left.size() == right.size()) return 0;
    return left.size() < right.size() ? -1 : 1;
}

// The part that both calls have in common: null texts sort first.
bool OneIsNull(LPCSTR left, LPCSTR right, int& order) {
    if (left && right) return false;
    order = (left ? 1 : 0) - (right ? 1 : 0);
    return true;
}

}  // namespace

int lstrcmpiA(LPCSTR left, LPCSTR right) {
    int order = 0;
    return OneIsNull(left, right, order) ? order : CompareRanks(left, right);
}

int lstrcmpA(LPCSTR left, LPCSTR right) {
    if (const int order = lstrcmpiA(left, right); order || !left || !right) return order;
    // Of two texts that differ in case only, the one with the small letter sorts first.
    const int bytes = std::strcmp(left, right);
    return bytes == 0 ? 0 : (bytes < 0 ? 1 : -1);
}

char* _strdup(const char* text) {
    if (win32::MustFail<"_strdup">()) return nullptr;
    return text ? strdup(text) : nullptr;
}

unsigned char* _mbstok(unsigned char* text, const unsigned char* delimiters) {
    return reinterpret_cast<unsigned char*>(
        std::strtok(reinterpret_cast<char*>(text), reinterpret_cast<const char*>(delimiters)));
}
