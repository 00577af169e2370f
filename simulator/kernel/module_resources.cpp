#include "kernel/module_resources.h"

#include <elf.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <optional>
#include <string_view>

#include "core/descriptor.h"

namespace win32 {
namespace {

using Bytes = std::span<const std::byte>;

// A part of `bytes`, empty if it does not lie within.
Bytes Part(Bytes bytes, std::size_t offset, std::size_t size) {
    if (offset > bytes.size() || size > bytes.size() - offset) return {};
    return bytes.subspan(offset, size);
}

template <class Record>
std::optional<Record> ReadAt(Bytes bytes, std::size_t offset) {
    const Bytes part = Part(bytes, offset, sizeof(Record));
    if (part.empty()) return std::nullopt;
    Record record;
    std::memcpy(&record, part.data(), sizeof record);
    return record;
}

std::size_t Aligned4(std::size_t offset) { return (offset + 3) & ~std::size_t{3}; }

bool StartsWith(Bytes bytes, std::string_view magic) {
    return bytes.size() >= magic.size() && !std::memcmp(bytes.data(), magic.data(), magic.size());
}

// A regular file that is read in parts.
class PartedFile {
public:
    explicit PartedFile(const char* path) : m_file(open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {
        struct stat status;
        if (m_file && fstat(m_file.Get(), &status) == 0 && S_ISREG(status.st_mode))
            m_size = static_cast<std::size_t>(status.st_size);
    }

    std::size_t Size() const { return m_size; }

    // Empty if the part does not lie within the file.
    std::vector<std::byte> Read(std::size_t offset, std::size_t size) const {
        if (offset > m_size || size > m_size - offset) return {};
        std::vector<std::byte> bytes(size);
        for (std::size_t done = 0; done < size;) {
            const ssize_t count = pread(m_file.Get(), bytes.data() + done, size - done,
                                        static_cast<off_t>(offset + done));
            if (count < 0 && errno == EINTR) continue;
            if (count <= 0) return {};
            done += static_cast<std::size_t>(count);
        }
        return bytes;
    }

private:
    Descriptor m_file;
    std::size_t m_size = 0;
};

// The section ".win32res" of an ELF file, or nothing.
std::vector<std::byte> ReadSection(const PartedFile& file) {
    const auto header = ReadAt<Elf64_Ehdr>(file.Read(0, sizeof(Elf64_Ehdr)), 0);
    if (!header || header->e_ident[EI_CLASS] != ELFCLASS64) return {};
    const auto table = file.Read(header->e_shoff, header->e_shnum * sizeof(Elf64_Shdr));
    const auto sectionAt = [&](std::size_t index) {
        return ReadAt<Elf64_Shdr>(table, index * sizeof(Elf64_Shdr));
    };
    const auto names = sectionAt(header->e_shstrndx);
    if (!names) return {};
    constexpr std::string_view kName(".win32res", sizeof ".win32res");
    for (std::size_t i = 0; i < header->e_shnum; ++i)
        if (const auto section = sectionAt(i);
            section &&
            StartsWith(file.Read(names->sh_offset + section->sh_name, kName.size()), kName))
            return file.Read(section->sh_offset, section->sh_size);
    return {};
}

std::vector<std::byte> ReadScript(const char* path) {
    using namespace std::string_view_literals;
    constexpr auto kElf =
        "\x7F"
        "ELF"sv;
    constexpr auto kScript = "\0\0\0\0\x20\0\0\0\xFF\xFF\0\0\xFF\xFF\0\0"sv;
    const PartedFile file(path);
    if (StartsWith(file.Read(0, kElf.size()), kElf)) return ReadSection(file);
    if (StartsWith(file.Read(0, kScript.size()), kScript)) return file.Read(0, file.Size());
    return {};
}

// A type or name in a compiled script: 0xFFFF and a number, or a text up to its NUL, which counts
// as 0. Moves `offset` behind it.
std::optional<WORD> ReadName(Bytes header, std::size_t& offset) {
    const auto first = ReadAt<WORD>(header, offset);
    if (!first) return std::nullopt;
    if (*first == 0xFFFF) {
        const auto number = ReadAt<WORD>(header, offset + 2);
        offset += 4;
        return number;
    }
    for (;;) {
        const auto unit = ReadAt<WORD>(header, offset);
        if (!unit) return std::nullopt;
        offset += 2;
        if (*unit == 0) return WORD{0};
    }
}

}  // namespace

ResourceFile::ResourceFile(const char* path) : m_script(ReadScript(path)) {
    for (std::size_t start = 0;;) {
        const auto dataSize = ReadAt<DWORD>(m_script, start);
        const auto headerSize = ReadAt<DWORD>(m_script, start + 4);
        if (!dataSize || !headerSize || *headerSize < 16) return;
        const Bytes header = Part(m_script, start, *headerSize);
        std::size_t offset = 8;
        const auto type = ReadName(header, offset);
        const auto id = type ? ReadName(header, offset) : std::nullopt;
        const Bytes data = Part(m_script, start + *headerSize, *dataSize);
        if (!id || data.size() != *dataSize) return;
        if (*type && *id) m_entries.push_back({*type, *id, data});
        start = Aligned4(start + *headerSize + *dataSize);
    }
}

Bytes ResourceFile::Find(WORD type, WORD id) const {
    for (const Entry& entry : m_entries)
        if (entry.type == type && entry.id == id) return entry.data;
    return {};
}

}  // namespace win32
