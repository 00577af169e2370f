// The event log and the console as sinks, and the table of all kinds of sink.

#include "hlxLogSinks.h"

#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <iterator>

#include "hlxOwned.h"

namespace {

WORD EventType(std::int32_t level) {
    switch (level) {
        case 1:
            return EVENTLOG_ERROR_TYPE;
        case 2:
            return EVENTLOG_WARNING_TYPE;
        default:
            return EVENTLOG_INFORMATION_TYPE;
    }
}

HlxResult OpenEventLog(const char* progname, std::int32_t, const void*, std::uint32_t,
                       HlxLogSink** sink) {
    HlxBlock<HlxLogSink> made(hlx_logNewSink(0));
    if (!made) return HLX_NO_MEMORY;
    made->handle = RegisterEventSourceA(nullptr, progname);
    if (!made->handle) return HLX_NOT_OPENED;
    *sink = made.release();
    return HLX_DONE;
}

HlxResult CloseEventLog(HlxLogSink* sink) {
    if (!sink) return HLX_NULL_SINK;
    if (sink->handle) DeregisterEventSource(sink->handle);
    std::free(sink);
    return HLX_DONE;
}

HlxResult WriteEventLog(HlxLogSink* sink, std::int32_t level, const char* line) {
    if (!sink) return HLX_NULL_SINK;
    if (!sink->handle) return HLX_REFUSED;
    ReportEventA(sink->handle, EventType(level), 0, 0, nullptr, 1, 0, &line, nullptr);
    return HLX_DONE;
}

HlxResult OpenConsole(const char*, std::int32_t, const void* argument, std::uint32_t,
                      HlxLogSink** sink) {
    HlxLogSink* const made = hlx_logNewSink(kSinkBorrowsStream);
    if (!made) return HLX_NO_MEMORY;
    const auto* const wantsStdout = static_cast<const std::int32_t*>(argument);
    made->handle = wantsStdout && *wantsStdout ? stdout : stderr;
    *sink = made;
    return HLX_DONE;
}

constexpr HlxLogSinkOps kSinkTypes[] = {
    {HLX_SINK_EVENT_LOG, OpenEventLog, CloseEventLog, WriteEventLog},
    {HLX_SINK_CONSOLE, OpenConsole, hlx_logCloseStream, hlx_logWriteStream},
    {HLX_SINK_FILE, hlx_logOpenFile, hlx_logCloseStream, hlx_logWriteStream},
};

}  // namespace

const HlxLogSinkOps* hlx_logSinkOps(std::int32_t type) {
    const bool known = type >= 0 && static_cast<std::size_t>(type) < std::size(kSinkTypes);
    return known ? &kSinkTypes[type] : nullptr;
}

HlxLogSink* hlx_logNewSink(std::uint32_t flags) {
    auto* const sink = static_cast<HlxLogSink*>(std::calloc(1, sizeof(HlxLogSink)));
    if (sink) sink->flags = flags;
    return sink;
}
