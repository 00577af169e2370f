#include "hlxAgentKey.h"

#include <windows.h>

namespace {

constexpr DWORD kDirectoryCapacity = 2048;

class AgentKey {
public:
    AgentKey() {
        if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, kHlxAgentKey, 0, KEY_READ, &m_key) != ERROR_SUCCESS)
            m_key = nullptr;
    }
    ~AgentKey() {
        if (m_key) RegCloseKey(m_key);
    }
    AgentKey(const AgentKey&) = delete;
    AgentKey& operator=(const AgentKey&) = delete;

    HKEY Handle() const { return m_key; }

private:
    HKEY m_key = nullptr;
};

std::string AgentDirectory() {
    const AgentKey key;
    DWORD type = REG_NONE;
    DWORD size = kDirectoryCapacity;
    std::string text(size, '\0');
    if (!key.Handle() ||
        RegQueryValueExA(key.Handle(), nullptr, nullptr, &type,
                         reinterpret_cast<BYTE*>(text.data()), &size) != ERROR_SUCCESS ||
        (type != REG_SZ && type != REG_EXPAND_SZ))
        return {};
    text.resize(size);
    return text.substr(0, text.find('\0'));  // the stored text may or may not count its end
}

}  // namespace

std::string hlx_agentFile(const char* fileName) {
    std::string path = AgentDirectory();
    if (!path.empty() && path.back() != '\\') path += '\\';
    return path + fileName;
}

std::optional<std::int32_t> hlx_readUseTcp() {
    const AgentKey key;
    if (!key.Handle()) return std::nullopt;
    std::int32_t value = 0;
    DWORD size = sizeof value;
    RegQueryValueExW(key.Handle(), L"UseTCP", nullptr, nullptr, reinterpret_cast<BYTE*>(&value),
                     &size);
    return value;
}
