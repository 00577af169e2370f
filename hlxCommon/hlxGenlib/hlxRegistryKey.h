// A registry key opened for reading.
#pragma once

#include <windows.h>

#include <string>

#include "hlxOwned.h"

class CHlxRegistryKey {
public:
    CHlxRegistryKey(HKEY root, LPCSTR path);
    virtual ~CHlxRegistryKey() = default;

    // Whether the key could be opened.
    bool IsOpen() const { return m_hKey != nullptr; }
    operator HKEY() const { return m_hKey.get(); }

    // A text value of at most `capacity` bytes with its terminator; null names the default value.
    // Empty if the key is not open or the value is missing, longer, or no text. Environment
    // references are not expanded.
    std::string ReadText(LPCSTR name, DWORD capacity) const;

private:
    HlxKey m_hKey;
};
