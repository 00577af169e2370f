// The registry on disk: a folder for each key, a file for each value, under one root that all
// processes of the user share (the environment variable WIN32_REGISTRY, or "win32-registry" in the
// user's data folder).
//
// Names compare without regard to the case of ASCII letters. A file's name is that of its key or
// value in small letters, with what a file name cannot hold escaped; values have a '=' in front. A
// value's file holds its type, its name as it was first written, and its data, and is only ever
// replaced as a whole. The time of a key's last write is that of its folder.
#pragma once

#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/descriptor.h"
#include "kernel/kernel_object.h"

namespace win32 {

struct RegistryValue {
    DWORD type = 0;
    std::string name;
    std::string data;
};

// An open key. Its operations return 0 or a Windows error number; a deleted key returns
// ERROR_KEY_DELETED from then on.
class RegistryKey : public KernelObject {
public:
    explicit RegistryKey(Descriptor folder) : m_folder(std::move(folder)) {}
    const char* Kind() const override { return "registry key"; }

    // One of the keys that are always there, such as HKEY_LOCAL_MACHINE; null if it cannot be made.
    static std::shared_ptr<RegistryKey> OpenTop(const char* name);

    // Opens the key at `path`, relative to this one, its steps divided by backslashes.
    DWORD Open(std::string_view path, std::shared_ptr<RegistryKey>& key) const;
    // The same, but makes each key on the way that is missing; `created` refers to the last one.
    DWORD Create(std::string_view path, std::shared_ptr<RegistryKey>& key, bool& created) const;
    // Deletes the key at `path` with all that is in it.
    DWORD Delete(std::string_view path) const;

    DWORD Read(std::string_view name, RegistryValue& value) const;
    DWORD Write(const RegistryValue& value) const;
    DWORD DeleteValue(std::string_view name) const;

    // The value at a place in the order of names, or ERROR_NO_MORE_ITEMS.
    DWORD ReadAt(std::size_t index, RegistryValue& value);
    DWORD CountValues(DWORD& count) const;
    DWORD LastWrite(FILETIME& time) const;

    bool IsDeleted() const;
    // A path to the key's folder for as long as the key is open.
    std::string FolderPath() const;

    static bool IsValueFile(std::string_view file) { return file.starts_with('='); }

private:
    DWORD ErrorNow() const;
    DWORD ReadValueFile(const std::string& file, RegistryValue& value) const;
    std::vector<std::string> ListValueFiles() const;

    Descriptor m_folder;
    std::mutex m_listingMutex;
    std::vector<std::string> m_listing;  // the value files at the change noted below
    timespec m_listedChange = {};
};

}  // namespace win32
