// The trace log of the common code.
//
// A host creates a context, adds sinks and installs it as the default; all statements of the common
// code go to it. Without a default context a statement has no effect.
//
//     std::int32_t level = 1;
//     std::uint32_t mask = HLX_AREA_INTEGRITY;
//     std::string path = "daemon.log";
//     hlx_logReadEnv("HLX_DAEMON", &level, &mask, path);
//     HlxLogContext* log = nullptr;
//     if (hlx_logCreate(&log, "daemon", 0, HLX_LOG_TIME | HLX_LOG_PROGNAME) == HLX_DONE) {
//         hlx_logSetLevel(log, level);
//         hlx_logSetMask(log, mask);
//         hlx_logAddSink(log, HLX_SINK_FILE, path.c_str());
//         hlx_logSetDefault(log);
//     }
//     ...
//     hlx_logSetDefault(nullptr);
//     hlx_logDestroy(log);
//
// Any thread may write statements, without a lock: a line is formatted on the stack of its thread
// and written to each sink in one call. The host creates the context and its sinks before other
// threads start, and rotates and destroys them while no other thread writes.
#pragma once

#include <atomic>
#include <cstdarg>
#include <cstdint>
#include <string>

#include "hlxResult.h"

struct HlxLogSink;     // the state of an open sink; opaque
struct HlxLogSinkOps;  // the operations of a kind of sink; opaque

// Options of a context: what a line begins with, in this order, and how files are opened.
enum HlxLogOption : std::uint32_t {
    HLX_LOG_PROGNAME = 0x08,     // the program name
    HLX_LOG_PID = 0x10,          // "[4412] "
    HLX_LOG_LINE_NUMBER = 0x04,  // lines formed before this one, six wide
    HLX_LOG_DATE = 0x01,         // "2026-11-18 ", local
    HLX_LOG_TIME = 0x02,         // "06:15:08 ", local
    HLX_LOG_TRUNCATE = 0x10000   // a file sink truncates its file instead of appending to it
};

// Mask bits: which area of the common code a statement belongs to.
enum HlxLogArea : std::uint32_t {
    HLX_AREA_ALLOCATION = 0x04,        // results of allocation and the allocator's report
    HLX_AREA_SWCACHE = 0x08,           // errors of the software-update cache file
    HLX_AREA_INTEGRITY = 0x10,         // damaged blocks and block addresses; the default mask
    HLX_AREA_ALLOCATION_TRACE = 0x40,  // entry and exit of the allocator
    HLX_AREA_XML = 0x200,              // XML elements and character data
    HLX_AREA_XML_OTHER = 0x400         // XML comments and everything else
};

// Kinds of sink, with the argument that hlx_logAddSink takes for each.
enum HlxLogSinkType : std::int32_t {
    HLX_SINK_EVENT_LOG = 0,  // none; the program name is the event source's name
    HLX_SINK_CONSOLE = 1,    // std::int32_t*: other than 0 is stdout; 0 or a null pointer is stderr
    HLX_SINK_FILE = 2        // char*: the file's path
};

constexpr std::int32_t HLX_MAXIMUM_LOG_LEVEL = 7;
constexpr std::int32_t HLX_LONGEST_LOG_LINE = 511;  // bytes, without the terminating zero

struct HlxLogSlot {
    std::int32_t type;  // HlxLogSinkType
    std::uint32_t state;
    HlxLogSink* sink;
    const HlxLogSinkOps* ops;
};

struct HlxLogContext {
    HlxLogSlot* slots;
    std::int32_t slot_count;
    std::int32_t level;  // the highest level that passes; a lower number is more severe
    std::uint32_t mask;  // a statement passes if its mask has one of these bits
    char* progname;      // null if none was given
    std::uint32_t pid;
    std::uint32_t line_count;  // counted by any thread, through std::atomic_ref
    std::uint32_t flags;       // HlxLogOption bits
};

// Creates a context of level 1 and mask HLX_AREA_INTEGRITY, without sinks but with room for
// `slotCount` of them, 3 at least. `progname` may be null. Codes: 0, HLX_REFUSED without `context`,
// HLX_NO_MEMORY. The caller releases the context with hlx_logDestroy.
HlxResult hlx_logCreate(HlxLogContext** context, const char* progname, std::int32_t slotCount,
                        std::uint32_t flags);

// Closes all sinks and releases the context; null is ignored.
void hlx_logDestroy(HlxLogContext* context);

// Opens a sink, which stays until the context is destroyed. A file of 200 MiB or more is rotated
// first: it is renamed, with ".rotate" appended to its name, and replaces an older file of that
// name. Codes: 0; HLX_REFUSED for a null context, an unknown type or a null path; HLX_NO_SLOTS;
// HLX_NO_MEMORY also when no slot is free; HLX_NOT_OPENED.
HlxResult hlx_logAddSink(HlxLogContext* context, std::int32_t type, const void* argument);

// Rotates the file sinks of a running log whose file has grown beyond 200 MiB; `path` is the path
// they were opened with. A sink whose file cannot be opened again is removed. Returns 1 if a file
// was rotated, else 0. The library never calls it by itself.
std::int32_t hlx_logRotate(HlxLogContext* context, const char* path);

// To be called before other threads log. A null context is ignored, and has level and mask 0.
void hlx_logSetLevel(HlxLogContext* context, std::int32_t level);
void hlx_logSetMask(HlxLogContext* context, std::uint32_t mask);
std::int32_t hlx_logGetLevel(const HlxLogContext* context);
std::uint32_t hlx_logGetMask(const HlxLogContext* context);

// Returns the level, or HLX_MAXIMUM_LOG_LEVEL if it is above that or negative.
std::int32_t hlx_logClampLevel(std::int32_t level);

// Reads the host's settings from the environment variables `prefix` + "_TRACE_PATH", "_TRACE_LEVEL"
// (clamped) and "_TRACE_MASK"; a null or empty prefix means "HLX_DAEMON". Numbers are decimal, 0x
// hexadecimal or 0 octal, and 0 if they are invalid. A variable that is unset or empty does not
// change the value of the caller. The pointers must not be null. No context is changed.
void hlx_logReadEnv(const char* prefix, std::int32_t* level, std::uint32_t* mask,
                    std::string& path);

// Whether the context writes statements of this level and mask: there is a context, `level` is not
// above its level, and `mask` and its mask have a bit in common.
inline bool hlx_logPasses(const HlxLogContext* context, std::int32_t level, std::uint32_t mask) {
    if (context && level <= context->level && (context->mask & mask) != 0) [[unlikely]]
        return true;
    return false;
}

// Writes a line, formatted as by printf, to every sink of the context if hlx_logPasses; otherwise
// does nothing. The line is truncated to HLX_LONGEST_LOG_LINE bytes, including its prefix.
void hlx_log(HlxLogContext* context, std::int32_t level, std::uint32_t mask, const char* format,
             ...) __attribute__((format(printf, 4, 5)));
void hlx_logV(HlxLogContext* context, std::int32_t level, std::uint32_t mask, const char* format,
              va_list arguments) __attribute__((format(printf, 4, 0)));

// The test is part of the statement: one that does not pass makes no call and does not evaluate
// its arguments.
#define hlx_log(context, level, mask, ...) \
    (hlx_logPasses(context, level, mask) ? hlx_log(context, level, mask, __VA_ARGS__) : void())

// The context of the common code's statements, null at the start of the process. Setting another
// one does not release the previous one.
extern std::atomic<HlxLogContext*> g_hlxLogDefault;  // use only the two functions
inline HlxLogContext* hlx_logGetDefault() {
    return g_hlxLogDefault.load(std::memory_order_acquire);
}
void hlx_logSetDefault(HlxLogContext* context);
