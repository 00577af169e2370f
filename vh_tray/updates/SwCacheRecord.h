// The record of the software-update cache file.
#pragma once

#include <memory>

class CSwCacheRecord {
public:
    virtual ~CSwCacheRecord() = default;

    // Reads the cache file of the agent. False: the file is missing, or out of memory.
    bool Read();

    const char* Name() const { return m_name.get(); }
    const char* Version() const { return m_version.get(); }

private:
    std::unique_ptr<char[]> m_name, m_version, m_third, m_fourth;
};
