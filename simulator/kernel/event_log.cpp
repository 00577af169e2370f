// The event log: the system's log, a line for each event, under the source's name.
#include <syslog.h>

#include <mutex>
#include <new>
#include <string>

#include "kernel/kernel_object.h"
#include "core/last_error.h"

namespace {

struct EventSource : win32::KernelObject {
    const char* Kind() const override { return "event source"; }
    explicit EventSource(const char* name) : name(name) {}
    const std::string name;
};

int PriorityOf(WORD type) {
    switch (type) {
        case EVENTLOG_ERROR_TYPE:
            return LOG_ERR;
        case EVENTLOG_WARNING_TYPE:
            return LOG_WARNING;
        default:
            return LOG_INFO;
    }
}

}  // namespace

HANDLE RegisterEventSourceA(LPCSTR, LPCSTR source) {
    if (win32::MustFail<"RegisterEventSourceA">()) return nullptr;
    if (!source) return win32::Fail(ERROR_INVALID_PARAMETER, HANDLE{});
    try {
        return win32::NewHandle(std::make_shared<EventSource>(source));
    } catch (const std::bad_alloc&) {
        return win32::Fail(ERROR_NOT_ENOUGH_MEMORY, HANDLE{});
    }
}

BOOL DeregisterEventSource(HANDLE source) {
    if (win32::MustFail<"DeregisterEventSource">()) return FALSE;
    if (!win32::ObjectOf<EventSource>(source)) return FALSE;
    win32::TakeHandle(source);
    return TRUE;
}

BOOL ReportEventA(HANDLE handle, WORD type, WORD, DWORD, PVOID, WORD stringCount, DWORD,
                  LPCSTR* strings, LPVOID) {
    if (win32::MustFail<"ReportEventA", "type of the event">(type)) return FALSE;
    const auto source = win32::ObjectOf<EventSource>(handle);
    if (!source) return FALSE;
    // The process has one connection to the log, opened again with the name of each source.
    static std::mutex mutex;
    const std::lock_guard guard(mutex);
    openlog(source->name.c_str(), LOG_PID, LOG_USER);
    for (WORD i = 0; i < stringCount; ++i) syslog(PriorityOf(type), "%s", strings[i]);
    closelog();
    return TRUE;
}
