#include "RegistryKey.h"

#include <cstring>
#include <stdexcept>

namespace agent_sim {
namespace {

constexpr DWORD kLongestName = 16384;  // with its terminator

void Check(LSTATUS status, const std::string& what) {
    if (status != ERROR_SUCCESS)
        throw std::runtime_error("registry: cannot " + what + ", error " + std::to_string(status));
}

}  // namespace

RegistryKey::RegistryKey(const std::string& path, For use) : path_(path) {
    HKEY key = nullptr;
    if (use == For::kWriting)
        Check(RegCreateKeyExA(HKEY_LOCAL_MACHINE, path.c_str(), 0, nullptr, 0, KEY_READ | KEY_WRITE,
                              nullptr, &key, nullptr),
              "open " + path);
    else if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS)
        return;
    key_.reset(key);
}

void RegistryKey::Set(const std::string& name, DWORD type, const void* data, std::size_t size) {
    Check(RegSetValueExA(key_.get(), name.c_str(), 0, type, static_cast<const BYTE*>(data),
                         static_cast<DWORD>(size)),
          "write '" + name + "' of " + path_);
}

void RegistryKey::SetText(const std::string& name, const std::string& text) {
    Set(name, REG_SZ, text.c_str(), text.size() + 1);
}

void RegistryKey::SetNumber(const std::string& name, std::uint32_t number) {
    Set(name, REG_DWORD, &number, sizeof number);
}

void RegistryKey::SetBytes(const std::string& name, std::span<const std::uint8_t> bytes) {
    Set(name, REG_BINARY, bytes.data(), bytes.size());
}

std::optional<std::vector<std::uint8_t>> RegistryKey::Get(const std::string& name,
                                                          DWORD type) const {
    DWORD size = 0;
    DWORD found = REG_NONE;
    if (RegQueryValueExA(key_.get(), name.c_str(), nullptr, &found, nullptr, &size) !=
            ERROR_SUCCESS ||
        found != type)
        return std::nullopt;
    std::vector<std::uint8_t> data(size);
    if (RegQueryValueExA(key_.get(), name.c_str(), nullptr, nullptr, data.data(), &size) !=
        ERROR_SUCCESS)
        return std::nullopt;
    data.resize(size);
    return data;
}

std::optional<std::string> RegistryKey::Text(const std::string& name) const {
    const auto data = Get(name, REG_SZ);
    if (!data) return std::nullopt;
    const auto* text = reinterpret_cast<const char*>(data->data());
    return std::string(text, strnlen(text, data->size()));
}

std::optional<std::uint32_t> RegistryKey::Number(const std::string& name) const {
    const auto data = Get(name, REG_DWORD);
    std::uint32_t number = 0;
    if (!data || data->size() != sizeof number) return std::nullopt;
    std::memcpy(&number, data->data(), sizeof number);
    return number;
}

std::vector<std::uint8_t> RegistryKey::Bytes(const std::string& name) const {
    return Get(name, REG_BINARY).value_or(std::vector<std::uint8_t>{});
}

std::vector<std::string> RegistryKey::ValueNames() const {
    std::vector<std::string> names;
    std::string name(kLongestName, '\0');
    for (DWORD index = 0;; ++index) {
        DWORD length = kLongestName;
        if (RegEnumValueA(key_.get(), index, name.data(), &length, nullptr, nullptr, nullptr,
                          nullptr) != ERROR_SUCCESS)
            return names;
        names.emplace_back(name, 0, length);
    }
}

void RegistryKey::DeleteAllValues() {
    for (const std::string& name : ValueNames())
        Check(RegDeleteValueA(key_.get(), name.c_str()), "delete '" + name + "' of " + path_);
}

}  // namespace agent_sim
