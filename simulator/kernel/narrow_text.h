// Narrow text of this platform is UTF-8; Windows' files have UTF-16.
#pragma once

#include <string>
#include <string_view>

namespace win32 {

// Surrogates without their other half become U+FFFD.
std::string NarrowText(std::u16string_view wide);

}  // namespace win32
