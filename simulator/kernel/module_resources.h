// The resources of programs and libraries, and of compiled resource scripts.
//
// An ELF file has them in its section ".win32res", in the format of a compiled script (*.res); a
// *.res file contains only resources. Files are not trusted: data that is invalid or outside of the
// file is ignored.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "windef.h"

namespace win32 {

// All resources of one file that have numbers as their type and name.
class ResourceFile {
public:
    // Reads only the script of the file. A file without resources, or one that cannot be read, has
    // no entries.
    explicit ResourceFile(const char* path);

    // The bytes of the resource in the first language it is there in; empty if it is not there.
    // They are valid as long as this object.
    std::span<const std::byte> Find(WORD type, WORD id) const;

private:
    struct Entry {
        WORD type;
        WORD id;
        std::span<const std::byte> data;
    };

    std::vector<std::byte> m_script;
    std::vector<Entry> m_entries;
};

// The resource of a loaded module (null: the program), as long as it is loaded.
std::span<const std::byte> FindModuleResource(HMODULE module, WORD type, WORD id);

}  // namespace win32
