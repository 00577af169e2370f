#include "core/last_error.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>

namespace {

thread_local DWORD t_lastError = 0;

}  // namespace

DWORD GetLastError() { return t_lastError; }

void SetLastError(DWORD error) { t_lastError = error; }

namespace win32 {

DWORD ErrorOfErrno(int error) {
    switch (error) {
        case ENOENT:
            return ERROR_FILE_NOT_FOUND;
        case ENOTDIR:
            return ERROR_PATH_NOT_FOUND;
        case EMFILE:
        case ENFILE:
            return ERROR_TOO_MANY_OPEN_FILES;
        case ENOMEM:
            return ERROR_NOT_ENOUGH_MEMORY;
        case ENOSPC:
            return ERROR_DISK_FULL;
        case EEXIST:
            return ERROR_ALREADY_EXISTS;
        case EINVAL:
        case ENAMETOOLONG:
            return ERROR_INVALID_PARAMETER;
        default:
            return ERROR_ACCESS_DENIED;
    }
}

void NotImplemented(const std::string& what) {
    std::fprintf(stderr, "The simulator does not implement %s\n", what.c_str());
    std::abort();
}

}  // namespace win32
