#include "registry/registry_store.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <map>

#include "kernel/dates.h"
#include "core/last_error.h"

namespace win32 {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLongestFileName = 200;

char Small(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool IsPlain(char c) {
    return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || (c && std::strchr(" _-{}().,", c));
}

std::uint64_t Hash(std::string_view text) {
    std::uint64_t hash = 0xCBF29CE484222325;
    for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3;
    return hash;
}

void AppendHex(std::string& text, std::uint64_t number, int digits) {
    for (int shift = (digits - 1) * 4; shift >= 0; shift -= 4)
        text += "0123456789abcdef"[number >> shift & 0xF];
}

// In a name that is too long for a file, a hash replaces the end.
std::string FileNameOf(std::string_view name) {
    std::string file;
    file.reserve(name.size());
    for (char c : name) {
        c = Small(c);
        if (IsPlain(c) && !(c == '.' && file.empty())) {
            file += c;
        } else {
            file += '%';
            AppendHex(file, static_cast<unsigned char>(c), 2);
        }
    }
    if (file.size() <= kLongestFileName) return file;
    const std::uint64_t hash = Hash(file);
    file.resize(kLongestFileName);
    file += "%~";
    AppendHex(file, hash, 16);
    return file;
}

std::string ValueFileOf(std::string_view name) { return "=" + FileNameOf(name); }

bool SameName(std::string_view left, std::string_view right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](char a, char b) { return Small(a) == Small(b); });
}

// The steps of a path as names of folders.
std::vector<std::string> StepsOf(std::string_view path) {
    std::vector<std::string> steps;
    steps.reserve(8);
    while (!path.empty()) {
        const std::size_t end = std::min(path.find('\\'), path.size());
        if (end > 0) steps.push_back(FileNameOf(path.substr(0, end)));
        path.remove_prefix(std::min(end + 1, path.size()));
    }
    return steps;
}

Descriptor OpenFolder(int parent, const std::string& name) {
    return Descriptor(openat(parent, name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

std::string RootFolder() {
    if (const char* root = std::getenv("WIN32_REGISTRY")) return root;
    if (const char* data = std::getenv("XDG_DATA_HOME"))
        return std::string(data) + "/win32-registry";
    const char* home = std::getenv("HOME");
    return std::string(home ? home : "/tmp") + "/.local/share/win32-registry";
}

void TouchFolder(int folder) {
    const timespec now = TimespecOf(simulator::Clock::Now());
    const timespec times[] = {now, now};
    futimens(folder, times);
}

bool WriteAll(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = write(file, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

std::optional<std::string> ReadAll(int file) {
    struct stat status;
    if (fstat(file, &status) != 0) return std::nullopt;
    std::string bytes(static_cast<std::size_t>(status.st_size), '\0');
    for (std::size_t done = 0; done < bytes.size();) {
        const ssize_t count = read(file, bytes.data() + done, bytes.size() - done);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return std::nullopt;
        done += static_cast<std::size_t>(count);
    }
    return bytes;
}

// What a value's file begins with.
struct FileHeader {
    DWORD type;
    DWORD nameSize;
};

std::string FileContents(const RegistryValue& value) {
    const FileHeader header{value.type, static_cast<DWORD>(value.name.size())};
    std::string bytes(reinterpret_cast<const char*>(&header), sizeof header);
    return bytes + value.name + value.data;
}

bool ParseFile(const std::string& bytes, RegistryValue& value) {
    FileHeader header;
    if (bytes.size() < sizeof header) return false;
    std::memcpy(&header, bytes.data(), sizeof header);
    if (header.nameSize > bytes.size() - sizeof header) return false;
    value.type = header.type;
    value.name = bytes.substr(sizeof header, header.nameSize);
    value.data = bytes.substr(sizeof header + header.nameSize);
    return true;
}

}  // namespace

std::shared_ptr<RegistryKey> RegistryKey::OpenTop(const char* name) {
    // Kept open: most calls begin at one of them.
    static std::mutex mutex;
    static auto& keys = *new std::map<std::string, std::shared_ptr<RegistryKey>>;  // by folder
    const std::string folder = RootFolder() + "/" + name;
    const std::lock_guard guard(mutex);
    std::shared_ptr<RegistryKey>& key = keys[folder];
    if (key && !key->IsDeleted()) return key;
    std::error_code error;
    fs::create_directories(folder, error);
    Descriptor file = OpenFolder(AT_FDCWD, folder);
    return key = file ? std::make_shared<RegistryKey>(std::move(file)) : nullptr;
}

DWORD RegistryKey::Open(std::string_view path, std::shared_ptr<RegistryKey>& key) const {
    std::string folder = ".";
    for (const std::string& step : StepsOf(path)) folder.append("/").append(step);
    Descriptor file = OpenFolder(m_folder.Get(), folder);
    if (!file) return ErrorNow();
    key = std::make_shared<RegistryKey>(std::move(file));
    return ERROR_SUCCESS;
}

DWORD RegistryKey::Create(std::string_view path, std::shared_ptr<RegistryKey>& key,
                          bool& created) const {
    created = false;
    Descriptor folder = OpenFolder(m_folder.Get(), ".");
    if (!folder) return ErrorNow();
    for (const std::string& step : StepsOf(path)) {
        created = mkdirat(folder.Get(), step.c_str(), 0700) == 0;
        if (!created && errno != EEXIST) return ErrorNow();
        Descriptor next = OpenFolder(folder.Get(), step);
        if (!next) return ErrorNow();
        if (created) {
            TouchFolder(folder.Get());
            TouchFolder(next.Get());
        }
        folder = std::move(next);
    }
    key = std::make_shared<RegistryKey>(std::move(folder));
    return ERROR_SUCCESS;
}

DWORD RegistryKey::Delete(std::string_view path) const {
    std::shared_ptr<RegistryKey> key;
    if (const DWORD error = Open(path, key)) return error;
    std::error_code error;
    const fs::path folder = fs::read_symlink(key->FolderPath(), error);
    fs::remove_all(folder, error);
    const Descriptor parent = OpenFolder(AT_FDCWD, folder.parent_path());
    if (parent) TouchFolder(parent.Get());
    return error ? ErrorOfErrno(error.value()) : ERROR_SUCCESS;
}

DWORD RegistryKey::Read(std::string_view name, RegistryValue& value) const {
    const DWORD error = ReadValueFile(ValueFileOf(name), value);
    if (error) return error;
    return SameName(value.name, name) ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND;
}

DWORD RegistryKey::Write(const RegistryValue& value) const {
    static std::atomic<unsigned> count{0};
    const std::string draft = ".new-" + std::to_string(getpid()) + "-" + std::to_string(++count);
    {
        const Descriptor file(
            openat(m_folder.Get(), draft.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
        if (!file) return ErrorNow();
        if (!WriteAll(file.Get(), FileContents(value))) {
            const DWORD error = ErrorNow();
            unlinkat(m_folder.Get(), draft.c_str(), 0);
            return error;
        }
    }
    if (renameat(m_folder.Get(), draft.c_str(), m_folder.Get(), ValueFileOf(value.name).c_str()))
        return ErrorNow();
    TouchFolder(m_folder.Get());
    return ERROR_SUCCESS;
}

DWORD RegistryKey::DeleteValue(std::string_view name) const {
    if (unlinkat(m_folder.Get(), ValueFileOf(name).c_str(), 0) != 0) return ErrorNow();
    TouchFolder(m_folder.Get());
    return ERROR_SUCCESS;
}

DWORD RegistryKey::ReadAt(std::size_t index, RegistryValue& value) {
    const std::lock_guard guard(m_listingMutex);
    // The system stores changes with the resolution of its tick only, so a list that is out of date
    // is made again whatever its time is; an enumeration begins with a new one.
    for (bool old = index == 0;; old = true) {
        struct stat status;
        if (fstat(m_folder.Get(), &status) != 0 || status.st_nlink == 0) return ERROR_KEY_DELETED;
        const timespec& change = status.st_ctim;
        if (old || change.tv_sec != m_listedChange.tv_sec ||
            change.tv_nsec != m_listedChange.tv_nsec) {
            m_listing = ListValueFiles();
            m_listedChange = change;
        }
        if (index >= m_listing.size()) return ERROR_NO_MORE_ITEMS;
        const DWORD error = ReadValueFile(m_listing[index], value);
        if (error != ERROR_FILE_NOT_FOUND) return error;
    }
}

DWORD RegistryKey::CountValues(DWORD& count) const {
    if (IsDeleted()) return ERROR_KEY_DELETED;
    count = static_cast<DWORD>(ListValueFiles().size());
    return ERROR_SUCCESS;
}

DWORD RegistryKey::LastWrite(FILETIME& time) const {
    struct stat status;
    if (fstat(m_folder.Get(), &status) != 0 || status.st_nlink == 0) return ERROR_KEY_DELETED;
    time = FileTimeOf(status.st_mtim);
    return ERROR_SUCCESS;
}

bool RegistryKey::IsDeleted() const {
    struct stat status;
    return fstat(m_folder.Get(), &status) != 0 || status.st_nlink == 0;
}

std::string RegistryKey::FolderPath() const {
    return "/proc/self/fd/" + std::to_string(m_folder.Get());
}

DWORD RegistryKey::ErrorNow() const {
    const int error = errno;
    return IsDeleted() ? ERROR_KEY_DELETED : ErrorOfErrno(error);
}

DWORD RegistryKey::ReadValueFile(const std::string& file, RegistryValue& value) const {
    const Descriptor descriptor(openat(m_folder.Get(), file.c_str(), O_RDONLY | O_CLOEXEC));
    if (!descriptor) return ErrorNow();
    const auto bytes = ReadAll(descriptor.Get());
    return bytes && ParseFile(*bytes, value) ? ERROR_SUCCESS : ERROR_BADKEY;
}

std::vector<std::string> RegistryKey::ListValueFiles() const {
    std::vector<std::string> files;
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(FolderPath() + "/", error))
        if (std::string name = entry.path().filename(); IsValueFile(name))
            files.push_back(std::move(name));
    std::sort(files.begin(), files.end());
    return files;
}

}  // namespace win32
