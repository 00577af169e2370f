#include "hlxLog.h"

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <span>
#include <string_view>

#include "hlxLogSinks.h"

std::atomic<HlxLogContext*> g_hlxLogDefault;

namespace {

constexpr std::int32_t kFewestSlots = 3;

std::span<HlxLogSlot> Slots(const HlxLogContext& context) {
    return {context.slots, context.slots ? static_cast<std::size_t>(context.slot_count) : 0};
}

char* CopyOf(const char* text) {
    const std::size_t size = std::strlen(text) + 1;
    void* const copy = std::malloc(size);
    return copy ? static_cast<char*>(std::memcpy(copy, text, size)) : nullptr;
}

// Clears the block before its release, so that a use after it finds null pointers.
void WipeAndFree(void* block, std::size_t size) {
    if (!block) return;
    volatile char* bytes = static_cast<volatile char*>(block);
    for (std::size_t i = 0; i < size; ++i) bytes[i] = 0;
    std::free(block);
}

// Builds a line, which is truncated at the end of the buffer.
class Line {
public:
    Line() { m_text[0] = 0; }

    const char* Text() const { return m_text; }

    void Append(std::string_view text) {
        m_length += text.copy(m_text + m_length, HLX_LONGEST_LOG_LINE - m_length);
        m_text[m_length] = 0;
    }

    // Pads the number at the left to `width` characters, 10 at most.
    void AppendNumber(std::uint32_t number, int width, char fill) {
        char digits[10];
        char* const end = std::end(digits);
        char* first = end;
        do {
            *--first = static_cast<char>('0' + number % 10);
            number /= 10;
        } while (number);
        while (end - first < width) *--first = fill;
        Append({first, end});
    }

    __attribute__((format(printf, 2, 0))) void AppendFormatted(const char* format,
                                                               va_list arguments) {
        const std::size_t room = sizeof m_text - m_length;
        const int wanted = std::vsnprintf(m_text + m_length, room, format, arguments);
        if (wanted > 0) m_length += std::min(static_cast<std::size_t>(wanted), room - 1);
        m_text[m_length] = 0;
    }

private:
    char m_text[HLX_LONGEST_LOG_LINE + 1];
    std::size_t m_length = 0;
};

// Appends `separator` and a part of a date or a time.
void AppendPart(Line& line, std::string_view separator, WORD number) {
    line.Append(separator);
    line.AppendNumber(number, 2, '0');
}

void AppendPrefix(Line& line, const HlxLogContext& context, std::uint32_t number) {
    const std::uint32_t flags = context.flags;
    if (flags & HLX_LOG_PROGNAME) {
        line.Append(context.progname ? context.progname : "progname_not_set");
        if (!(flags & HLX_LOG_PID)) line.Append(" ");
    }
    if (flags & HLX_LOG_PID) {
        line.Append("[");
        line.AppendNumber(context.pid, 0, ' ');
        line.Append("] ");
    }
    if (flags & HLX_LOG_LINE_NUMBER) {
        line.AppendNumber(number, 6, ' ');
        line.Append(" ");
    }
    if (flags & (HLX_LOG_DATE | HLX_LOG_TIME)) {
        SYSTEMTIME now;
        GetLocalTime(&now);
        if (flags & HLX_LOG_DATE) {
            line.AppendNumber(now.wYear, 4, '0');
            AppendPart(line, "-", now.wMonth);
            AppendPart(line, "-", now.wDay);
            line.Append(" ");
        }
        if (flags & HLX_LOG_TIME) {
            AppendPart(line, "", now.wHour);
            AppendPart(line, ":", now.wMinute);
            AppendPart(line, ":", now.wSecond);
            line.Append(" ");
        }
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
    return level < 0 ? HLX_MAXIMUM_LOG_LEVEL : std::min(level, HLX_MAXIMUM_LOG_LEVEL);
}

void(hlx_log)(HlxLogContext* context, std::int32_t level, std::uint32_t mask, const char* format,
              ...) {
    va_list arguments;
    va_start(arguments, format);
    hlx_logV(context, level, mask, format, arguments);
    va_end(arguments);
}

void hlx_logV(HlxLogContext* context, std::int32_t level, std::uint32_t mask, const char* format,
              va_list arguments) {
    if (!hlx_logPasses(context, level, mask)) return;
    Line line;
    AppendPrefix(line, *context,
                 std::atomic_ref(context->line_count).fetch_add(1, std::memory_order_relaxed));
    line.AppendFormatted(format, arguments);
    for (const HlxLogSlot& slot : Slots(*context))
        if (hlx_logIsUsed(slot)) slot.ops->write(slot.sink, level, line.Text());
}

void hlx_logSetDefault(HlxLogContext* context) {
    g_hlxLogDefault.store(context, std::memory_order_release);
}
