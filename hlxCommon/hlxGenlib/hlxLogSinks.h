// The kinds of sink that a log context can hold. Internal to the log.
#pragma once

#include <cstdint>

#include "hlxLog.h"

struct HlxLogSink {
    void* handle;         // the FILE, or the event source; null: lines are not written
    std::uint32_t flags;  // kSinkBorrowsStream or 0
};

constexpr std::uint32_t kSinkBorrowsStream = 0x20000;  // the sink does not close the stream

struct HlxLogSinkOps {
    std::int32_t type;
    // `argument` is that of hlx_logAddSink, `flags` are the context's. Returns a new sink in
    // `sink`.
    HlxResult (*open)(const char* progname, std::int32_t reserved, const void* argument,
                      std::uint32_t flags, HlxLogSink** sink);
    HlxResult (*close)(HlxLogSink* sink);
    HlxResult (*write)(HlxLogSink* sink, std::int32_t level, const char* line);
};

// The operations of a kind of sink, or null if there is no such kind.
const HlxLogSinkOps* hlx_logSinkOps(std::int32_t type);

// Creates a sink without a handle; null if there is no memory.
HlxLogSink* hlx_logNewSink(std::uint32_t flags);

// Open of a file sink; close and write of a sink over a stream.
HlxResult hlx_logOpenFile(const char* progname, std::int32_t reserved, const void* argument,
                          std::uint32_t flags, HlxLogSink** sink);
HlxResult hlx_logCloseStream(HlxLogSink* sink);
HlxResult hlx_logWriteStream(HlxLogSink* sink, std::int32_t level, const char* line);

// Whether a slot holds an open sink.
constexpr std::uint32_t kSlotInUse = 0x1001;
inline bool hlx_logIsUsed(const HlxLogSlot& slot) { return (slot.state & kSlotInUse) != 0; }
