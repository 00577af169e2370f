// The file as a sink, and its rotation.

#include <sys/types.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <span>
#include <string_view>

#include "hlxLogSinks.h"
#include "hlxOwned.h"

namespace {

// 200 MiB. A file of exactly this size rotates when it is opened, but not while it is open: part of
// the interface, do not correct.
constexpr off_t kRotationSize = 209'715'200;
constexpr const char* kAppend = "a+";
constexpr const char* kTruncate = "w+";

std::FILE* StreamOf(const HlxLogSink* sink) { return static_cast<std::FILE*>(sink->handle); }

off_t SizeOf(std::FILE* file) { return fseeko(file, 0, SEEK_END) == 0 ? ftello(file) : -1; }

enum class Rotation { kDone, kSkipped, kNotOpened };

// Renames the sink's file and opens a new one at `path`. Without memory for the new name nothing is
// changed. If the close fails, the file keeps its name, and the sink has no stream.
Rotation Rotate(HlxLogSink& sink, const char* path, const char* mode) {
    constexpr char kSuffix[] = ".rotate";
    const std::size_t length = std::strlen(path);
    const HlxBlock<char> older(static_cast<char*>(std::malloc(length + sizeof kSuffix)));
    std::FILE* const file = StreamOf(&sink);
    if (!older) return Rotation::kSkipped;
    std::copy_n(path, length, older.get());
    std::copy_n(kSuffix, sizeof kSuffix, older.get() + length);

    sink.handle = nullptr;
    if (std::fclose(file) != 0) return Rotation::kSkipped;
    std::remove(older.get());
    std::rename(path, older.get());
    sink.handle = std::fopen(path, mode);
    return sink.handle ? Rotation::kDone : Rotation::kNotOpened;
}

}  // namespace

HlxResult hlx_logOpenFile(const char*, std::int32_t, const void* argument, std::uint32_t flags,
                          HlxLogSink** sink) {
    const auto* const path = static_cast<const char*>(argument);
    if (!path) return HLX_REFUSED;
    const char* const mode = flags & HLX_LOG_TRUNCATE ? kTruncate : kAppend;
    HlxBlock<HlxLogSink> made(hlx_logNewSink(0));
    if (!made) return HLX_NO_MEMORY;
    made->handle = std::fopen(path, mode);
    if (!made->handle || (SizeOf(StreamOf(made.get())) >= kRotationSize &&
                          Rotate(*made, path, mode) == Rotation::kNotOpened))
        return HLX_NOT_OPENED;
    *sink = made.release();
    return HLX_DONE;
}

HlxResult hlx_logCloseStream(HlxLogSink* sink) {
    if (!sink) return HLX_NULL_SINK;
    if (!(sink->flags & kSinkBorrowsStream) && sink->handle) std::fclose(StreamOf(sink));
    std::free(sink);
    return HLX_DONE;
}

HlxResult hlx_logWriteStream(HlxLogSink* sink, std::int32_t, const char* line) {
    if (!sink) return HLX_NULL_SINK;
    if (!sink->handle) return HLX_REFUSED;
    // In one call, so that no other thread writes in between.
    char text[HLX_LONGEST_LOG_LINE + 1];
    const std::size_t length = std::string_view(line).copy(text, HLX_LONGEST_LOG_LINE);
    text[length] = '\n';
    std::fwrite(text, 1, length + 1, StreamOf(sink));
    std::fflush(StreamOf(sink));
    return HLX_DONE;
}

std::int32_t hlx_logRotate(HlxLogContext* context, const char* path) {
    if (!context || !context->slots || !path) return 0;
    std::int32_t rotated = 0;
    for (HlxLogSlot& slot :
         std::span(context->slots, static_cast<std::size_t>(context->slot_count))) {
        if (!hlx_logIsUsed(slot) || slot.type != HLX_SINK_FILE) continue;
        if (!slot.sink->handle) break;
        if (SizeOf(StreamOf(slot.sink)) <= kRotationSize) continue;
        const Rotation rotation = Rotate(*slot.sink, path, kAppend);
        if (rotation == Rotation::kSkipped) continue;
        rotated = 1;
        if (rotation == Rotation::kNotOpened) {
            hlx_logCloseStream(slot.sink);
            slot = {};
        }
    }
    return rotated;
}
