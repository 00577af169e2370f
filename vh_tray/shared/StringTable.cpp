#include "shared/StringTable.h"

#include "frame/AppModule.h"

namespace {
constexpr int kLongestText = 4096;
}

bool LoadText(UINT id, std::string& text) {
    char buffer[kLongestText];
    const int length = LoadStringA(_Module.GetModuleInstance(), id, buffer, kLongestText);
    if (length <= 0) return false;
    text.assign(buffer, static_cast<std::size_t>(length));
    return true;
}
