// A registry key below HKEY_LOCAL_MACHINE, opened for reading or for writing.
#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "hlxOwned.h"

namespace agent_sim {

class RegistryKey {
public:
    enum class For { kReading, kWriting };

    // For writing, a missing key is created; throws std::runtime_error if that fails. For reading,
    // a key that cannot be opened has no values.
    RegistryKey(const std::string& path, For use);

    // The empty name is the default value. The setters throw std::runtime_error on failure.
    void SetText(const std::string& name, const std::string& text);
    void SetNumber(const std::string& name, std::uint32_t number);
    void SetBytes(const std::string& name, std::span<const std::uint8_t> bytes);

    // Nothing if the value is missing or of another type.
    std::optional<std::string> Text(const std::string& name) const;
    std::optional<std::uint32_t> Number(const std::string& name) const;
    std::vector<std::uint8_t> Bytes(const std::string& name) const;

    std::vector<std::string> ValueNames() const;
    void DeleteAllValues();

private:
    void Set(const std::string& name, DWORD type, const void* data, std::size_t size);
    std::optional<std::vector<std::uint8_t>> Get(const std::string& name, DWORD type) const;

    std::string path_;
    HlxKey key_;
};

}  // namespace agent_sim
