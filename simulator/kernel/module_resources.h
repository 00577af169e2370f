// The resources of programs and libraries, and of compiled resource scripts.
//
// An ELF file carries them as its section ".win32res", in the format of a compiled script (*.res);
// a *.res file is nothing but resources. Files are not trusted: what lies outside of them or makes
// no sense is as if it were not there.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "windef.h"

namespace win32 {

// All resources of one file that have numbers as their type and name.
class ResourceFile {
public:
    // Reads the script of the file and nothing else of it. A file without resources, or one that
    // cannot be read, has no entries.
    explicit ResourceFile(const char* path);

    // The bytes of the resource in the first language it is there in; empty if it is not there.
    // They live as long as this object.
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
