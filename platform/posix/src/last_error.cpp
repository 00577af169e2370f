#include "src/last_error.h"

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

void NotImplemented(const char* what) {
    std::fprintf(stderr, "Not implemented by the Win32 subset: %s\n", what);
#ifndef NDEBUG
    std::abort();
#endif
    SetLastError(ERROR_CALL_NOT_IMPLEMENTED);
}

}  // namespace win32
