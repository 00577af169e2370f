#include "src/module_resources.h"

#include <elf.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string_view>

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

// A type or name in a compiled script: 0xFFFF and a number, or a text up to its NUL, which gives 0.
// Moves `offset` behind it.
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

// The fields of the headers of a Windows program that lead to its resources.
constexpr std::size_t kProgramHeaderAt = 0x3C;
constexpr std::size_t kSectionSize = 40;
constexpr std::size_t kResourceDirectory = 2;
constexpr WORD kFormat64 = 0x20B;

struct SectionHeader {
    char name[8];
    DWORD virtualSize;
    DWORD address;
    DWORD rawSize;
    DWORD rawOffset;
};

// Finds what the addresses of a loaded program stand for in its file.
struct ProgramImage {
    Bytes file;
    std::vector<SectionHeader> sections;

    // From the address to the end of its section's bytes in the file.
    Bytes At(DWORD address) const {
        for (const SectionHeader& section : sections) {
            if (address < section.address || address - section.address >= section.rawSize) continue;
            const Bytes bytes = Part(file, section.rawOffset, section.rawSize);
            return bytes.subspan(std::min<std::size_t>(address - section.address, bytes.size()));
        }
        return {};
    }
};

struct DirectoryEntry {
    DWORD name;
    DWORD offset;

    static constexpr DWORD kHigh = 0x80000000;
    bool HasNumber() const { return !(name & kHigh); }
    bool IsDirectory() const { return offset & kHigh; }
    DWORD Place() const { return offset & ~kHigh; }
};

std::vector<DirectoryEntry> ReadDirectory(Bytes resources, std::size_t offset) {
    const auto named = ReadAt<WORD>(resources, offset + 12);
    const auto numbered = ReadAt<WORD>(resources, offset + 14);
    if (!named || !numbered) return {};
    const std::size_t count = std::size_t{*named} + *numbered;
    const Bytes bytes = Part(resources, offset + 16, count * sizeof(DirectoryEntry));
    if (bytes.empty()) return {};
    std::vector<DirectoryEntry> entries(count);
    std::memcpy(entries.data(), bytes.data(), bytes.size());
    return entries;
}

}  // namespace

ResourceFile::ResourceFile(std::vector<std::byte> file) : m_file(std::move(file)) {
    using namespace std::string_view_literals;
    if (StartsWith(m_file,
                   "\x7F"
                   "ELF"sv))
        ListElf();
    else if (StartsWith(m_file, "MZ"sv))
        ListProgram();
    else if (StartsWith(m_file, "\0\0\0\0\x20\0\0\0\xFF\xFF\0\0\xFF\xFF\0\0"sv))
        ListScript(m_file);
}

ResourceFile ResourceFile::Read(const char* path) {
    // Anything but a regular file could block the reader or never end.
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)) return ResourceFile({});
    std::ifstream stream(path, std::ios::binary | std::ios::ate);
    if (!stream) return ResourceFile({});
    std::vector<std::byte> bytes(static_cast<std::size_t>(stream.tellg()));
    stream.seekg(0);
    stream.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<std::size_t>(stream.gcount()));
    return ResourceFile(std::move(bytes));
}

Bytes ResourceFile::Find(WORD type, WORD id) const {
    for (const Entry& entry : m_entries)
        if (entry.type == type && entry.id == id) return entry.data;
    return {};
}

void ResourceFile::ListScript(Bytes script) {
    for (std::size_t start = 0;;) {
        const auto dataSize = ReadAt<DWORD>(script, start);
        const auto headerSize = ReadAt<DWORD>(script, start + 4);
        if (!dataSize || !headerSize || *headerSize < 16) return;
        const Bytes header = Part(script, start, *headerSize);
        std::size_t offset = 8;
        const auto type = ReadName(header, offset);
        const auto id = type ? ReadName(header, offset) : std::nullopt;
        const Bytes data = Part(script, start + *headerSize, *dataSize);
        if (!id || data.size() != *dataSize) return;
        if (*type && *id) m_entries.push_back({*type, *id, data});
        start = Aligned4(start + *headerSize + *dataSize);
    }
}

void ResourceFile::ListElf() {
    const auto header = ReadAt<Elf64_Ehdr>(m_file, 0);
    if (!header || header->e_ident[EI_CLASS] != ELFCLASS64) return;
    const auto sectionAt = [&](std::size_t index) {
        return ReadAt<Elf64_Shdr>(m_file, header->e_shoff + index * sizeof(Elf64_Shdr));
    };
    const auto names = sectionAt(header->e_shstrndx);
    if (!names) return;
    constexpr std::string_view kSection(".win32res", sizeof ".win32res");
    for (std::size_t i = 0; i < header->e_shnum; ++i) {
        const auto section = sectionAt(i);
        if (!section) return;
        const Bytes name = Part(m_file, names->sh_offset + section->sh_name, kSection.size());
        if (StartsWith(name, kSection))
            ListScript(Part(m_file, section->sh_offset, section->sh_size));
    }
}

void ResourceFile::ListProgram() {
    const auto start = ReadAt<DWORD>(m_file, kProgramHeaderAt);
    if (!start || !StartsWith(Part(m_file, *start, 4), {"PE\0\0", 4})) return;
    const std::size_t fileHeader = std::size_t{*start} + 4;
    const std::size_t optionalHeader = fileHeader + 20;
    const auto sectionCount = ReadAt<WORD>(m_file, fileHeader + 2);
    const auto optionalSize = ReadAt<WORD>(m_file, fileHeader + 16);
    const auto format = ReadAt<WORD>(m_file, optionalHeader);
    if (!sectionCount || !optionalSize || !format) return;
    const std::size_t directories = optionalHeader + (*format == kFormat64 ? 112 : 96);
    const auto address = ReadAt<DWORD>(m_file, directories + kResourceDirectory * 8);
    if (!address) return;

    ProgramImage image{m_file, {}};
    for (std::size_t i = 0; i < *sectionCount; ++i)
        if (const auto section =
                ReadAt<SectionHeader>(m_file, optionalHeader + *optionalSize + i * kSectionSize))
            image.sections.push_back(*section);

    const Bytes resources = image.At(*address);
    for (const DirectoryEntry& type : ReadDirectory(resources, 0)) {
        if (!type.HasNumber() || !type.IsDirectory()) continue;
        for (const DirectoryEntry& id : ReadDirectory(resources, type.Place())) {
            if (!id.HasNumber() || !id.IsDirectory()) continue;
            const auto languages = ReadDirectory(resources, id.Place());
            if (languages.empty() || languages[0].IsDirectory()) continue;
            const auto place = ReadAt<DWORD>(resources, languages[0].Place());
            const auto size = ReadAt<DWORD>(resources, languages[0].Place() + std::size_t{4});
            if (!place || !size) continue;
            const Bytes data = Part(image.At(*place), 0, *size);
            m_entries.push_back({static_cast<WORD>(type.name), static_cast<WORD>(id.name), data});
        }
    }
}

}  // namespace win32
