// The record of the software-update cache file, read anew.
#pragma once

#include <memory>

class CSwCacheRecord {
public:
    // Reads the agent's cache file. False: there is none, or no memory for it.
    bool Read();

    const char* Name() const { return m_name.get(); }
    const char* Version() const { return m_version.get(); }

private:
    std::unique_ptr<char[]> m_name, m_version, m_third, m_fourth;
};
