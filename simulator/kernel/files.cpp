// Files: opened for reading with Windows' rules of sharing, and by the names of the C runtime.
//
// POSIX lets a program read a file that is open for writing. A read lease prevents that: the system
// grants it only if the file is not open for writing, and blocks a later writer until the handle is
// closed.
#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <mutex>

#include "io.h"
#include "share.h"
#include "kernel/dates.h"
#include "core/descriptor.h"
#include "kernel/kernel_object.h"
#include "core/last_error.h"
#include "kernel/modules.h"

namespace {

struct File : win32::KernelObject {
    const char* Kind() const override { return "file"; }
    explicit File(win32::Descriptor file) : file(std::move(file)) {}
    const win32::Descriptor file;
};

// A writer that waits for a lease is announced by a signal, which would end a process without a
// handler.
void IgnoreLeaseSignals() {
    static std::once_flag once;
    std::call_once(once, [] {
        struct sigaction action = {};
        sigaction(SIGIO, nullptr, &action);
        if (action.sa_handler == SIG_DFL) signal(SIGIO, SIG_IGN);
    });
}

// False if the file is known to be open for writing. For some file systems and owners the system
// cannot determine it; then true.
bool KeepWritersOut(int file) {
    IgnoreLeaseSignals();
    return fcntl(file, F_SETLEASE, F_RDLCK) == 0 || errno != EAGAIN;
}

// Why the file could not be opened. POSIX reports a missing folder as a missing file.
DWORD OpenError(const std::filesystem::path& path) {
    const int error = errno;
    const bool folderMissing =
        error == ENOENT && path.has_parent_path() && access(path.parent_path().c_str(), F_OK) != 0;
    return folderMissing ? ERROR_PATH_NOT_FOUND : win32::ErrorOfErrno(error);
}

}  // namespace

HANDLE CreateFileA(LPCSTR path, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES, DWORD disposition,
                   DWORD, HANDLE) {
    if (win32::MustFail<"CreateFileA">()) return INVALID_HANDLE_VALUE;
    if (access != GENERIC_READ || disposition != OPEN_EXISTING)
        win32::NotImplemented("CreateFileA other than to read a file that exists");
    // O_NONBLOCK prevents that a pipe of that name blocks the caller.
    win32::Descriptor file(open(win32::PosixPath(path).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!file) return win32::Fail(OpenError(win32::PosixPath(path)), INVALID_HANDLE_VALUE);
    struct stat status;
    if (fstat(file.Get(), &status) == 0 && S_ISDIR(status.st_mode))
        return win32::Fail(ERROR_ACCESS_DENIED, INVALID_HANDLE_VALUE);
    if (!(share & FILE_SHARE_WRITE) && !KeepWritersOut(file.Get()))
        return win32::Fail(ERROR_SHARING_VIOLATION, INVALID_HANDLE_VALUE);
    return win32::NewHandle(std::make_shared<File>(std::move(file)));
}

BOOL ReadFile(HANDLE handle, LPVOID buffer, DWORD size, LPDWORD read, LPVOID) {
    if (read) *read = 0;
    if (win32::MustFail<"ReadFile">()) return FALSE;
    const auto file = win32::ObjectOf<File>(handle);
    if (!file) return FALSE;
    for (DWORD done = 0; done < size;) {
        const ssize_t count =
            ::read(file->file.Get(), static_cast<char*>(buffer) + done, size - done);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return win32::Fail(win32::ErrorOfErrno(errno), FALSE);
        if (count == 0) break;
        done += static_cast<DWORD>(count);
        if (read) *read = done;
    }
    return TRUE;
}

DWORD GetFileSize(HANDLE handle, LPDWORD high) {
    if (win32::MustFail<"GetFileSize">()) return INVALID_FILE_SIZE;
    const auto file = win32::ObjectOf<File>(handle);
    struct stat status;
    if (!file || fstat(file->file.Get(), &status) != 0) return INVALID_FILE_SIZE;
    const auto size = static_cast<std::uint64_t>(status.st_size);
    if (high) *high = static_cast<DWORD>(size >> 32);
    return static_cast<DWORD>(size);
}

BOOL GetFileTime(HANDLE handle, LPFILETIME creation, LPFILETIME access, LPFILETIME write) {
    if (win32::MustFail<"GetFileTime">()) return FALSE;
    if (creation || access) win32::NotImplemented("GetFileTime other than of the last write");
    const auto file = win32::ObjectOf<File>(handle);
    struct stat status;
    if (!file) return FALSE;
    if (fstat(file->file.Get(), &status) != 0)
        return win32::Fail(win32::ErrorOfErrno(errno), FALSE);
    if (write) *write = win32::FileTimeOf(status.st_mtim);
    return TRUE;
}

std::FILE* _fsopen(const char* path, const char* mode, int) {
    if (win32::MustFail<"_fsopen">()) return nullptr;
    return std::fopen(win32::PosixPath(path).c_str(), mode);
}

int _unlink(const char* path) {
    if (win32::MustFail<"_unlink">()) return -1;
    return unlink(win32::PosixPath(path).c_str());
}

int _umask(int mask) { return static_cast<int>(umask(static_cast<mode_t>(mask))); }
