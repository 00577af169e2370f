#include "hlxLog.h"

#include <windows.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <span>

#include "hlxLogSinks.h"

namespace {

constexpr std::int32_t kFewestSlots = 3;

std::atomic<HlxLogContext*> g_default;

std::span<HlxLogSlot> Slots(const HlxLogContext& context) {
    return {context.slots, context.slots ? static_cast<std::size_t>(context.slot_count) : 0};
}

char* CopyOf(const char* text) {
    const std::size_t size = std::strlen(text) + 1;
    void* const copy = std::malloc(size);
    return copy ? static_cast<char*>(std::memcpy(copy, text, size)) : nullptr;
}

// Overwrites and releases, so that a late user finds nothing to use.
void WipeAndFree(void* block, std::size_t size) {
    if (!block) return;
    volatile char* bytes = static_cast<volatile char*>(block);
    for (std::size_t i = 0; i < size; ++i) bytes[i] = 0;
    std::free(block);
}

// A line under construction: what does not fit is cut.
class Line {
public:
    const char* Text() const { return m_text; }

    __attribute__((format(printf, 2, 3))) void Append(const char* format, ...) {
        va_list arguments;
        va_start(arguments, format);
        AppendV(format, arguments);
        va_end(arguments);
    }

    __attribute__((format(printf, 2, 0))) void AppendV(const char* format, va_list arguments) {
        const std::size_t room = sizeof m_text - m_length;
        const int wanted = std::vsnprintf(m_text + m_length, room, format, arguments);
        if (wanted > 0) m_length += std::min(static_cast<std::size_t>(wanted), room - 1);
        m_text[m_length] = 0;
    }

private:
    char m_text[kHlxLongestLogLine + 1] = "";
    std::size_t m_length = 0;
};

void AppendPrefix(Line& line, const HlxLogContext& context, unsigned long number) {
    const std::uint32_t flags = context.flags;
    if (flags & HLX_LOG_PROGNAME) {
        line.Append("%s", context.progname ? context.progname : "progname_not_set");
        if (!(flags & HLX_LOG_PID)) line.Append(" ");
    }
    if (flags & HLX_LOG_PID) line.Append("[%lu] ", static_cast<unsigned long>(context.pid));
    if (flags & HLX_LOG_LINE_NUMBER) line.Append("%6lu ", number);
    if (flags & (HLX_LOG_DATE | HLX_LOG_TIME)) {
        SYSTEMTIME now;
        GetLocalTime(&now);
        if (flags & HLX_LOG_DATE)
            line.Append("%4.4d-%2.2d-%2.2d ", now.wYear, now.wMonth, now.wDay);
        if (flags & HLX_LOG_TIME)
            line.Append("%2.2d:%2.2d:%2.2d ", now.wHour, now.wMinute, now.wSecond);
    }
}

}  // namespace

HlxResult hlx_logCreate(HlxLogContext** context, const char* progname, std::int32_t slotCount,
                        std::uint32_t flags) {
    if (!context) return HLX_REFUSED;
    *context = nullptr;
    auto* const made = static_cast<HlxLogContext*>(std::calloc(1, sizeof(HlxLogContext)));
    if (!made) return HLX_NO_MEMORY;
    made->slot_count = std::max(slotCount, kFewestSlots);
    const bool isNamed = progname && *progname;
    if (isNamed) made->progname = CopyOf(progname);
    made->slots = static_cast<HlxLogSlot*>(
        std::calloc(static_cast<std::size_t>(made->slot_count), sizeof(HlxLogSlot)));
    if (!made->slots || (isNamed && !made->progname)) {
        hlx_logDestroy(made);
        return HLX_NO_MEMORY;
    }
    made->flags = flags;
    made->mask = HLX_AREA_INTEGRITY;
    made->level = 1;
    made->pid = GetCurrentProcessId();
    *context = made;
    return HLX_DONE;
}

void hlx_logDestroy(HlxLogContext* context) {
    if (!context) return;
    for (HlxLogSlot& slot : Slots(*context)) {
        if (!hlx_logIsUsed(slot)) continue;
        slot.ops->close(slot.sink);
        slot.sink = nullptr;
    }
    WipeAndFree(context->slots, Slots(*context).size_bytes());
    if (context->progname) WipeAndFree(context->progname, std::strlen(context->progname));
    WipeAndFree(context, sizeof *context);
}

HlxResult hlx_logAddSink(HlxLogContext* context, std::int32_t type, const void* argument) {
    if (!context) return HLX_REFUSED;
    if (!context->slots) return HLX_NO_SLOTS;
    const HlxLogSinkOps* const ops = hlx_logSinkOps(type);
    if (!ops) return HLX_REFUSED;
    for (HlxLogSlot& slot : Slots(*context)) {
        if (hlx_logIsUsed(slot)) continue;
        HlxLogSink* sink = nullptr;
        const HlxResult result = ops->open(context->progname, 0, argument, context->flags, &sink);
        if (result == HLX_DONE) slot = {type, kSlotInUse, sink, ops};
        return result;
    }
    return HLX_NO_MEMORY;
}

void hlx_logSetLevel(HlxLogContext* context, std::int32_t level) {
    if (context) context->level = level;
}

void hlx_logSetMask(HlxLogContext* context, std::uint32_t mask) {
    if (context) context->mask = mask;
}

std::int32_t hlx_logGetLevel(const HlxLogContext* context) { return context ? context->level : 0; }

std::uint32_t hlx_logGetMask(const HlxLogContext* context) { return context ? context->mask : 0; }

std::int32_t hlx_logClampLevel(std::int32_t level) {
    return level < 0 ? kHlxMaximumLogLevel : std::min(level, kHlxMaximumLogLevel);
}

void hlx_log(HlxLogContext* context, std::int32_t level, std::uint32_t mask, const char* format,
             ...) {
    va_list arguments;
    va_start(arguments, format);
    hlx_logV(context, level, mask, format, arguments);
    va_end(arguments);
}

void hlx_logV(HlxLogContext* context, std::int32_t level, std::uint32_t mask, const char* format,
              va_list arguments) {
    if (!context || !(context->mask & mask) || level > context->level) return;
    Line line;
    AppendPrefix(line, *context,
                 std::atomic_ref(context->line_count).fetch_add(1, std::memory_order_relaxed));
    line.AppendV(format, arguments);
    for (const HlxLogSlot& slot : Slots(*context))
        if (hlx_logIsUsed(slot)) slot.ops->write(slot.sink, level, line.Text());
}

HlxLogContext* hlx_logGetDefault() { return g_default.load(std::memory_order_acquire); }

void hlx_logSetDefault(HlxLogContext* context) {
    g_default.store(context, std::memory_order_release);
}
