// FormatMessageA and LocalFree: the system's texts for the error numbers that occur in this system.
#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <string>

#include "core/last_error.h"
#include "kernel/counts.h"

namespace {

struct SystemText {
    DWORD code;
    const char* text;
};

std::atomic<int> g_localBlocks{0};

constexpr SystemText kTexts[] = {
    {0, "The operation succeeded."},
    {ERROR_INVALID_FUNCTION, "The function is not valid."},
    {ERROR_FILE_NOT_FOUND, "The file was not found."},
    {ERROR_PATH_NOT_FOUND, "The path was not found."},
    {ERROR_TOO_MANY_OPEN_FILES, "Too many files are open."},
    {ERROR_ACCESS_DENIED, "Access was denied."},
    {ERROR_INVALID_HANDLE, "The handle is not valid."},
    {ERROR_NOT_ENOUGH_MEMORY, "There is not enough memory."},
    {ERROR_SHARING_VIOLATION, "Another process is using the file."},
    {ERROR_INVALID_PARAMETER, "A parameter is wrong."},
    {ERROR_DISK_FULL, "The disk is full."},
    {ERROR_INSUFFICIENT_BUFFER, "The buffer is too small."},
    {ERROR_MOD_NOT_FOUND, "The module was not found."},
    {ERROR_PROC_NOT_FOUND, "The procedure was not found."},
    {ERROR_ALREADY_EXISTS, "It exists already."},
    {ERROR_INSTALL_FAILURE, "A fatal error occurred during the installation."},
    {ERROR_SUCCESS_REBOOT_INITIATED, "The installation succeeded and has begun a restart."},
    {ERROR_RESOURCE_DATA_NOT_FOUND, "The file has no resources."},
    {ERROR_RESOURCE_TYPE_NOT_FOUND, "The file has no resource of this type."},
    {ERROR_SUCCESS_REBOOT_REQUIRED, "The changes take effect after a restart of the system."},
    {ERROR_SUCCESS_RESTART_REQUIRED, "The changes take effect after a restart of the service."},
    {12002, "The request has timed out."},
    {12007, "The server's name could not be resolved."},
    {12029, "No connection to the server could be made."},
    {0x80004005, "Unspecified error."},
    {0x800C0005, "The resource on the server was not found."},
    {0x800C0008, "The download has failed."},
};

// Errors of the Win32 API are also wrapped as results of COM.
constexpr DWORD kWin32Facility = 0x80070000;

const char* TextOf(DWORD code) {
    if ((code & 0xFFFF0000) == kWin32Facility) code &= 0xFFFF;
    for (const SystemText& entry : kTexts)
        if (entry.code == code) return entry.text;
    return nullptr;
}

}  // namespace

int win32::LocalBlocks() { return g_localBlocks; }

DWORD FormatMessageA(DWORD flags, LPCVOID, DWORD code, DWORD, LPSTR buffer, DWORD size, va_list*) {
    if (win32::MustFail<"FormatMessageA", "error code">(code)) return 0;
    if (!(flags & FORMAT_MESSAGE_FROM_SYSTEM))
        win32::NotImplemented("FormatMessageA from a string or a module");
    const char* known = TextOf(code);
    if (!known) return win32::Fail(ERROR_MR_MID_NOT_FOUND, 0u);
    const std::string text = std::string(known) + "\r\n";
    if (flags & FORMAT_MESSAGE_ALLOCATE_BUFFER) {
        const std::size_t room = std::max<std::size_t>(text.size() + 1, size);
        char* copy = static_cast<char*>(std::malloc(room));
        if (!copy) return win32::Fail(ERROR_NOT_ENOUGH_MEMORY, 0u);
        ++g_localBlocks;
        std::memcpy(copy, text.c_str(), text.size() + 1);
        std::memcpy(buffer, &copy, sizeof copy);
    } else {
        if (size <= text.size()) return win32::Fail(ERROR_INSUFFICIENT_BUFFER, 0u);
        std::memcpy(buffer, text.c_str(), text.size() + 1);
    }
    return static_cast<DWORD>(text.size());
}

HLOCAL LocalFree(HLOCAL memory) {
    if (memory) --g_localBlocks;
    std::free(memory);
    return nullptr;
}
