#include "hlxRegistryKey.h"

#include <cstring>

CHlxRegistryKey::CHlxRegistryKey(HKEY root, LPCSTR path) {
    HKEY key = nullptr;
    if (RegOpenKeyExA(root, path, 0, KEY_READ, &key) == ERROR_SUCCESS) m_hKey.reset(key);
}

std::string CHlxRegistryKey::ReadText(LPCSTR name, DWORD capacity) const {
    if (!m_hKey) return {};
    // The registry stores texts with or without their terminator.
    std::string text(capacity, '\0');
    DWORD type = REG_NONE;
    DWORD size = capacity;
    const LSTATUS status =
        RegQueryValueExA(*this, name, nullptr, &type, reinterpret_cast<BYTE*>(text.data()), &size);
    if (status != ERROR_SUCCESS || (type != REG_SZ && type != REG_EXPAND_SZ)) return {};
    text.resize(strnlen(text.data(), size));
    return text;
}
