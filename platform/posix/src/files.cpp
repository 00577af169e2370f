// Files: opened for reading with Windows' rules of sharing, and by the names of the C runtime.
//
// POSIX does not keep a reader from a file that somebody writes. A read lease does: the system
// grants it only while nobody has the file open for writing, and makes a writer that comes later
// wait until it is given up with the handle.
#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <mutex>

#include "io.h"
#include "share.h"
#include "src/dates.h"
#include "src/descriptor.h"
#include "src/kernel_object.h"
#include "src/last_error.h"
#include "src/modules.h"

namespace {

struct File : win32::KernelObject {
    explicit File(win32::Descriptor file) : file(std::move(file)) {}
    const win32::Descriptor file;
};

// A writer that waits for a lease is announced by a signal, which would end a process that has not
// asked for it.
void IgnoreLeaseSignals() {
    static std::once_flag once;
    std::call_once(once, [] {
        struct sigaction action = {};
        sigaction(SIGIO, nullptr, &action);
        if (action.sa_handler == SIG_DFL) signal(SIGIO, SIG_IGN);
    });
}

// True unless somebody is known to have the file open for writing: there are file systems and
// owners for which the system cannot tell.
bool KeepWritersOut(int file) {
    IgnoreLeaseSignals();
    return fcntl(file, F_SETLEASE, F_RDLCK) == 0 || errno != EAGAIN;
}

}  // namespace

HANDLE CreateFileA(LPCSTR path, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES, DWORD disposition,
                   DWORD, HANDLE) {
    if (win32::Refused("CreateFileA")) return INVALID_HANDLE_VALUE;
    if (access != GENERIC_READ || disposition != OPEN_EXISTING) {
        win32::NotImplemented("CreateFileA for anything but reading a file that exists");
        return INVALID_HANDLE_VALUE;
    }
    // O_NONBLOCK keeps a pipe of that name from holding the caller.
    win32::Descriptor file(open(win32::PosixPath(path).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!file) return win32::Fail(win32::ErrorOfErrno(errno), INVALID_HANDLE_VALUE);
    if (!(share & FILE_SHARE_WRITE) && !KeepWritersOut(file.Get()))
        return win32::Fail(ERROR_SHARING_VIOLATION, INVALID_HANDLE_VALUE);
    return win32::NewHandle(std::make_shared<File>(std::move(file)));
}

BOOL ReadFile(HANDLE handle, LPVOID buffer, DWORD size, LPDWORD read, LPVOID) {
    if (read) *read = 0;
    if (win32::Refused("ReadFile")) return FALSE;
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
    if (win32::Refused("GetFileSize")) return INVALID_FILE_SIZE;
    const auto file = win32::ObjectOf<File>(handle);
    struct stat status;
    if (!file || fstat(file->file.Get(), &status) != 0) return INVALID_FILE_SIZE;
    const auto size = static_cast<std::uint64_t>(status.st_size);
    if (high) *high = static_cast<DWORD>(size >> 32);
    return static_cast<DWORD>(size);
}

BOOL GetFileTime(HANDLE handle, LPFILETIME creation, LPFILETIME access, LPFILETIME write) {
    if (win32::Refused("GetFileTime")) return FALSE;
    if (creation || access) {
        win32::NotImplemented("times of a file other than that of the last write");
        return FALSE;
    }
    const auto file = win32::ObjectOf<File>(handle);
    struct stat status;
    if (!file) return FALSE;
    if (fstat(file->file.Get(), &status) != 0)
        return win32::Fail(win32::ErrorOfErrno(errno), FALSE);
    if (write) *write = win32::FileTimeOf(status.st_mtim);
    return TRUE;
}

std::FILE* _fsopen(const char* path, const char* mode, int) {
    if (win32::Refused("_fsopen")) return nullptr;
    return std::fopen(win32::PosixPath(path).c_str(), mode);
}

int _unlink(const char* path) {
    if (win32::Refused("_unlink")) return -1;
    return unlink(win32::PosixPath(path).c_str());
}

int _umask(int mask) { return static_cast<int>(umask(static_cast<mode_t>(mask))); }
