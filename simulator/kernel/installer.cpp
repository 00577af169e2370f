// The database of Windows Installer: the registry key "SOFTWARE\Installer Simulation" of the
// machine, with a key for each component under "Components" (value "Product": the product's code)
// and one for each product under "Products" (a text value for each property).
#include <cstring>
#include <string>

#include "core/fault_point.h"
#include "msi.h"
#include "winerror.h"
#include "winreg.h"

namespace {

constexpr DWORD kLongestCode = 38;

enum class Found { kText, kNoKey, kNoValue };

Found ReadText(const std::string& subkey, const char* value, std::string& text) {
    HKEY key;
    const std::string path = "SOFTWARE\\Installer Simulation\\" + subkey;
    if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, path.c_str(), 0, KEY_READ, &key)) return Found::kNoKey;
    DWORD type = REG_NONE;
    DWORD size = 0;
    LONG error = RegQueryValueExA(key, value, nullptr, &type, nullptr, &size);
    text.resize(size);
    if (!error)
        error = RegQueryValueExA(key, value, nullptr, &type, reinterpret_cast<BYTE*>(text.data()),
                                 &size);
    RegCloseKey(key);
    if (error || type != REG_SZ) return Found::kNoValue;
    text.resize(std::strlen(text.c_str()));
    return Found::kText;
}

}  // namespace

UINT MsiGetProductCodeA(LPCSTR component, LPSTR product) {
    if (const auto error = simulator::InjectedFault<"MsiGetProductCodeA">()) return *error;
    std::string code;
    if (ReadText(std::string("Components\\") + component, "Product", code) != Found::kText ||
        code.size() > kLongestCode)
        return ERROR_UNKNOWN_COMPONENT;
    std::memcpy(product, code.c_str(), code.size() + 1);
    return ERROR_SUCCESS;
}

UINT MsiGetProductInfoA(LPCSTR product, LPCSTR property, LPSTR text, LPDWORD size) {
    if (const auto error = simulator::InjectedFault<"MsiGetProductInfoA">()) return *error;
    std::string value;
    const Found found = ReadText(std::string("Products\\") + product, property, value);
    if (found == Found::kNoKey) return ERROR_UNKNOWN_PRODUCT;
    if (found == Found::kNoValue) return ERROR_UNKNOWN_PROPERTY;
    const DWORD capacity = *size;
    *size = static_cast<DWORD>(value.size());
    if (!text) return ERROR_SUCCESS;
    if (capacity <= value.size()) return ERROR_MORE_DATA;
    std::memcpy(text, value.c_str(), value.size() + 1);
    return ERROR_SUCCESS;
}
