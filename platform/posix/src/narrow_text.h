// Narrow text of this platform is UTF-8; Windows' files and wide functions have UTF-16.
#pragma once

#include <string>
#include <string_view>

namespace win32 {

// Surrogates without their other half become U+FFFD.
std::string NarrowText(std::u16string_view wide);
std::string NarrowText(std::wstring_view wide);

// Bytes that are no UTF-8 become U+FFFD.
std::u16string WideText(std::string_view narrow);

}  // namespace win32
