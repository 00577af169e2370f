// The calls of the registry, on the store and the watch.
#include "winreg.h"

#include <cstring>
#include <new>
#include <string>

#include "core/fault_point.h"
#include "core/last_error.h"
#include "registry/registry_store.h"
#include "registry/registry_watch.h"

namespace {

using KeyPointer = std::shared_ptr<win32::RegistryKey>;

const char* TopName(HKEY key) {
    if (key == HKEY_CURRENT_USER) return "HKEY_CURRENT_USER";
    if (key == HKEY_LOCAL_MACHINE) return "HKEY_LOCAL_MACHINE";
    return nullptr;
}

KeyPointer KeyOf(HKEY key) {
    if (const char* top = TopName(key)) return win32::RegistryKey::OpenTop(top);
    return std::dynamic_pointer_cast<win32::RegistryKey>(win32::ObjectOf(HANDLE{key}));
}

LONG Code(DWORD error) { return static_cast<LONG>(error); }

const char* OrEmpty(const char* text) { return text ? text : ""; }

// The error that `body` returns, or ERROR_NOT_ENOUGH_MEMORY where it throws std::bad_alloc.
template <class Body>
LONG WithoutThrowing(Body body) {
    try {
        return Code(body());
    } catch (const std::bad_alloc&) {
        return ERROR_NOT_ENOUGH_MEMORY;
    }
}

// A call on an open key: fails with the injected fault, else calls `body` with the key.
template <simulator::Literal kCall, simulator::Literal kDetail = "", class Body>
LONG OnKey(HKEY handle, Body body, std::int64_t detail = simulator::kAnyDetail) {
    if (const auto error = simulator::InjectedFault<kCall, kDetail>(detail)) return Code(*error);
    return WithoutThrowing([&]() -> DWORD {
        const KeyPointer key = KeyOf(handle);
        return key ? body(*key) : ERROR_INVALID_HANDLE;
    });
}

HKEY NewKeyHandle(KeyPointer key) { return static_cast<HKEY>(win32::NewHandle(std::move(key))); }

// Copies data out as RegQueryValueEx and RegEnumValue do: a null `data` asks for the size.
DWORD CopyData(const std::string& bytes, LPBYTE data, LPDWORD size) {
    if (!size) return data ? ERROR_INVALID_PARAMETER : ERROR_SUCCESS;
    const DWORD capacity = *size;
    *size = static_cast<DWORD>(bytes.size());
    if (!data) return ERROR_SUCCESS;
    if (capacity < bytes.size()) return ERROR_MORE_DATA;
    std::memcpy(data, bytes.data(), bytes.size());
    return ERROR_SUCCESS;
}

}  // namespace

LONG RegOpenKeyExA(HKEY key, LPCSTR subkey, DWORD, REGSAM, PHKEY result) {
    return OnKey<"RegOpenKeyExA">(key, [&](win32::RegistryKey& parent) {
        KeyPointer opened;
        const DWORD error = parent.Open(OrEmpty(subkey), opened);
        if (!error) *result = NewKeyHandle(std::move(opened));
        return error;
    });
}

LONG RegCreateKeyExA(HKEY key, LPCSTR subkey, DWORD, LPSTR, DWORD, REGSAM, LPSECURITY_ATTRIBUTES,
                     PHKEY result, LPDWORD disposition) {
    return OnKey<"RegCreateKeyExA">(key, [&](win32::RegistryKey& parent) {
        KeyPointer opened;
        bool created = false;
        if (const DWORD error = parent.Create(OrEmpty(subkey), opened, created)) return error;
        if (disposition) *disposition = created ? REG_CREATED_NEW_KEY : REG_OPENED_EXISTING_KEY;
        *result = NewKeyHandle(std::move(opened));
        return DWORD{ERROR_SUCCESS};
    });
}

LONG RegCloseKey(HKEY key) {
    if (const auto error = simulator::InjectedFault<"RegCloseKey">()) return Code(*error);
    if (TopName(key)) return ERROR_SUCCESS;
    if (!KeyOf(key)) return ERROR_INVALID_HANDLE;
    const auto closed = std::static_pointer_cast<win32::RegistryKey>(win32::TakeHandle(key));
    if (closed) win32::FireNotificationsOf(*closed);
    return ERROR_SUCCESS;
}

LONG RegDeleteTreeA(HKEY key, LPCSTR subkey) {
    return OnKey<"RegDeleteTreeA">(
        key, [&](win32::RegistryKey& parent) { return parent.Delete(OrEmpty(subkey)); });
}

LONG RegQueryValueExA(HKEY key, LPCSTR name, LPDWORD, LPDWORD type, LPBYTE data, LPDWORD size) {
    return OnKey<"RegQueryValueExA">(key, [&](win32::RegistryKey& opened) {
        win32::RegistryValue value;
        if (const DWORD error = opened.Read(OrEmpty(name), value)) return error;
        if (type) *type = value.type;
        return CopyData(value.data, data, size);
    });
}

// Names are ASCII; texts are widened byte by byte.
LONG RegQueryValueExW(HKEY key, LPCWSTR name, LPDWORD, LPDWORD type, LPBYTE data, LPDWORD size) {
    return OnKey<"RegQueryValueExW">(key, [&](win32::RegistryKey& opened) {
        const std::wstring_view wide = name ? name : L"";
        const std::string narrow(wide.begin(), wide.end());
        win32::RegistryValue value;
        if (const DWORD error = opened.Read(narrow, value)) return error;
        if (type) *type = value.type;
        if (value.type != REG_SZ && value.type != REG_EXPAND_SZ)
            return CopyData(value.data, data, size);
        const std::u16string text(value.data.begin(), value.data.end());
        return CopyData({reinterpret_cast<const char*>(text.data()), text.size() * 2}, data, size);
    });
}

LONG RegEnumValueA(HKEY key, DWORD index, LPSTR name, LPDWORD nameSize, LPDWORD, LPDWORD type,
                   LPBYTE data, LPDWORD size) {
    return OnKey<"RegEnumValueA", "index of the value">(
        key,
        [&](win32::RegistryKey& opened) {
            win32::RegistryValue value;
            if (const DWORD error = opened.ReadAt(index, value)) return error;
            if (type) *type = value.type;
            const DWORD error = CopyData(value.data, data, size);
            if (*nameSize <= value.name.size()) return DWORD{ERROR_MORE_DATA};
            std::memcpy(name, value.name.c_str(), value.name.size() + 1);
            *nameSize = static_cast<DWORD>(value.name.size());
            return error;
        },
        index);
}

LONG RegQueryInfoKeyA(HKEY key, LPSTR, LPDWORD classSize, LPDWORD, LPDWORD subkeys,
                      LPDWORD longestSubkey, LPDWORD longestClass, LPDWORD values,
                      LPDWORD longestName, LPDWORD longestData, LPDWORD securitySize,
                      PFILETIME lastWrite) {
    if (classSize || subkeys || longestSubkey || longestClass || longestName || longestData ||
        securitySize)
        win32::NotImplemented("RegQueryInfoKeyA other than for the values and the last write");
    return OnKey<"RegQueryInfoKeyA">(key, [&](win32::RegistryKey& opened) {
        DWORD error = values ? opened.CountValues(*values) : DWORD{ERROR_SUCCESS};
        if (!error && lastWrite) error = opened.LastWrite(*lastWrite);
        return error;
    });
}

LONG RegSetValueExA(HKEY key, LPCSTR name, DWORD, DWORD type, const BYTE* data, DWORD size) {
    return OnKey<"RegSetValueExA">(key, [&](win32::RegistryKey& opened) {
        const std::string bytes(reinterpret_cast<const char*>(data), size);
        return opened.Write({type, OrEmpty(name), bytes});
    });
}

LONG RegDeleteValueA(HKEY key, LPCSTR name) {
    return OnKey<"RegDeleteValueA">(
        key, [&](win32::RegistryKey& opened) { return opened.DeleteValue(OrEmpty(name)); });
}

LONG RegNotifyChangeKeyValue(HKEY key, BOOL subtree, DWORD filter, HANDLE event,
                             BOOL asynchronous) {
    if (filter != REG_NOTIFY_CHANGE_LAST_SET || !asynchronous)
        win32::NotImplemented("RegNotifyChangeKeyValue other than asynchronously and for values");
    if (const auto error = simulator::InjectedFault<"RegNotifyChangeKeyValue">())
        return Code(*error);
    return WithoutThrowing([&]() -> DWORD {
        KeyPointer opened = KeyOf(key);
        auto target = win32::ObjectOf<win32::Event>(event);
        if (!opened || !target) return ERROR_INVALID_HANDLE;
        return win32::ArmNotification(std::move(opened), subtree != 0, std::move(target));
    });
}
