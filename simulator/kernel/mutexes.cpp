// Mutexes, as names that exist as long as a process has a handle to them.
//
// A name is a lock file in the user's runtime folder. A process that opens it tries to get the
// exclusive lock: if it succeeds, it has created the mutex; if not, the mutex exists. Each keeps
// the shared lock, which the system releases when the handle is closed or the process ends.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>

#include "core/descriptor.h"
#include "kernel/kernel_object.h"
#include "core/last_error.h"

namespace {

struct Mutex : win32::KernelObject {
    const char* Kind() const override { return "mutex"; }
    win32::Descriptor lockFile;
};

// The user's runtime folder, or a folder in the temporary one that belongs to the user alone. Empty
// if another user has created that name.
std::string LockFolder() {
    if (const char* folder = std::getenv("XDG_RUNTIME_DIR")) return folder;
    const std::string folder =
        std::filesystem::temp_directory_path() / ("win32-" + std::to_string(getuid()));
    mkdir(folder.c_str(), 0700);
    struct stat status;
    const bool isOwn = lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
                       status.st_uid == getuid() && !(status.st_mode & (S_IWGRP | S_IWOTH));
    return isOwn ? folder : "";
}

// Names without a name space belong to the session, which is the user's only one here.
std::string LockFileOf(const std::string& folder, std::string_view name) {
    std::string file = name.find('\\') == name.npos ? "win32-mutex-Local+" : "win32-mutex-";
    for (const char c : name) file += c == '\\' || c == '/' ? '+' : c;
    return folder + "/" + file;
}

bool Lock(int file, short kind, int command) {
    struct flock range = {};
    range.l_type = kind;
    range.l_whence = SEEK_SET;
    int result;
    while ((result = fcntl(file, command, &range)) != 0 && errno == EINTR) continue;
    return result == 0;
}

}  // namespace

HANDLE CreateMutexA(LPSECURITY_ATTRIBUTES, BOOL initiallyOwned, LPCSTR name) {
    if (win32::MustFail<"CreateMutexA">()) return nullptr;
    if (initiallyOwned) win32::NotImplemented("CreateMutexA with an owner");
    const auto mutex = std::make_shared<Mutex>();
    bool existed = false;
    if (name) {
        const std::string folder = LockFolder();
        if (folder.empty()) return win32::Fail(ERROR_ACCESS_DENIED, HANDLE{});
        mutex->lockFile = win32::Descriptor(
            open(LockFileOf(folder, name).c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
        const int file = mutex->lockFile.Get();
        if (file < 0) return win32::Fail(win32::ErrorOfErrno(errno), HANDLE{});
        existed = !Lock(file, F_WRLCK, F_OFD_SETLK);
        if (!Lock(file, F_RDLCK, F_OFD_SETLKW))
            return win32::Fail(win32::ErrorOfErrno(errno), HANDLE{});
    }
    SetLastError(existed ? ERROR_ALREADY_EXISTS : ERROR_SUCCESS);
    return win32::NewHandle(mutex);
}
