#include "hlxAgentKey.h"

#include "hlxInterface.h"
#include "hlxRegistryKey.h"

namespace {
constexpr DWORD kDirectoryCapacity = 2048;
}

std::string hlx_agentFile(const char* fileName) {
    const CHlxRegistryKey key(HKEY_LOCAL_MACHINE, HLX_AGENT_KEY);
    std::string path = key.ReadText(nullptr, kDirectoryCapacity);
    if (!path.empty() && path.back() != '\\') path += '\\';
    return path + fileName;
}

std::optional<std::int32_t> hlx_readUseTcp() {
    const CHlxRegistryKey key(HKEY_LOCAL_MACHINE, HLX_AGENT_KEY);
    if (!key.IsOpen()) return std::nullopt;
    std::int32_t value = 0;
    DWORD size = sizeof value;
    RegQueryValueExW(key, HLX_USE_TCP_VALUE, nullptr, nullptr, reinterpret_cast<BYTE*>(&value),
                     &size);
    return value;
}
