// Memory runs out at every point of every operation that allocates: the first allocation fails,
// then the second, and so on until none does. Nothing may leak, crash or be handed out in part.
//
// The program's own malloc, calloc and free stand in front of the real ones (linked with --wrap),
// and its operator new uses them.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <new>

#include "ExpatLibrary.h"
#include "hex.h"
#include "hlxCommand.h"
#include "hlxComposite.h"
#include "hlxHealthResult.h"
#include "hlxLog.h"
#include "hlxMalloc.h"
#include "hlxRecord.h"
#include "temp_path.h"

namespace {

// What is watched between Arm and Disarm, without allocating for it.
struct Watch {
    bool isArmed = false;
    int callsLeft = 0;  // until the one that fails
    std::size_t liveCount = 0;
    void* live[1000];
} g_watch;

bool MayAllocate() { return !g_watch.isArmed || --g_watch.callsLeft != 0; }

void* Track(void* block) {
    if (g_watch.isArmed && block) g_watch.live[g_watch.liveCount++] = block;
    return block;
}

void Untrack(void* block) {
    void** const end = g_watch.live + g_watch.liveCount;
    void** const found = std::find(g_watch.live, end, block);
    if (found != end) *found = g_watch.live[--g_watch.liveCount];
}

}  // namespace

extern "C" {
void* __real_malloc(std::size_t size);
void* __real_calloc(std::size_t count, std::size_t size);
void __real_free(void* block);

void* __wrap_malloc(std::size_t size) {
    return MayAllocate() ? Track(__real_malloc(size)) : nullptr;
}
void* __wrap_calloc(std::size_t count, std::size_t size) {
    return MayAllocate() ? Track(__real_calloc(count, size)) : nullptr;
}
void __wrap_free(void* block) {
    Untrack(block);
    __real_free(block);
}
}

void* operator new(std::size_t size) {
    if (void* const block = std::malloc(size)) return block;
    throw std::bad_alloc();
}
// Not inlined: the compiler would see what operator new gave meet free, and take it for a mistake.
[[gnu::noinline]] void operator delete(void* block) noexcept { std::free(block); }
[[gnu::noinline]] void operator delete(void* block, std::size_t) noexcept { std::free(block); }

namespace {

// Runs the operation, which tells whether it got all that it asks for and releases what it got,
// with every allocation failing in turn. The count is of the allocations that it makes.
int FailEachAllocation(const std::function<bool()>& operation) {
    for (int failing = 1;; ++failing) {
        g_watch.liveCount = 0;
        g_watch.callsLeft = failing;
        g_watch.isArmed = true;
        const bool gotAll = operation();
        g_watch.isArmed = false;
        EXPECT_EQ(g_watch.liveCount, 0u) << "leaks if allocation " << failing << " fails";
        const bool hasFailed = g_watch.callsLeft <= 0;
        EXPECT_EQ(gotAll, !hasFailed) << "allocation " << failing;
        if (!hasFailed) return failing - 1;
    }
}

TEST(Memory, RunsOutInTheHealthReader) {
    ASSERT_NE(hlx_expatFunctions(), nullptr);
    EXPECT_THROW(throw std::bad_alloc(), std::bad_alloc) << "what the runtime keeps for throwing";
    constexpr char kDocument[] =
        "<HLXHealthResult><Message popup='a value that is long enough for the heap'>text that is "
        "long enough for the heap</Message><Browser url='a'/><RestrictIP>1.1.1.1-2.2.2.2"
        "</RestrictIP></HLXHealthResult>";
    FailEachAllocation([&] {
        std::uint32_t number = 0;
        char* texts[3] = {};
        std::uint32_t* ranges = nullptr;
        const HlxResult result =
            hlx_parseHealthResult(kDocument, &number, &number, &number, &number, &texts[0],
                                  &texts[1], &number, &texts[2], &number, &number, &ranges);
        bool gotAll = result == HLX_DONE && ranges && ranges[1];
        if (ranges) hlxfree(ranges);
        for (char* text : texts) {
            gotAll = gotAll && text;
            if (text) hlxfree(text);
        }
        return gotAll;
    });
    hlx_unloadExpat();
}

// A record there and back, then a composite message and a frame.
TEST(Memory, RunsOutInTheAgentLink) {
    const auto* const blob = B("blob");
    const auto exchangeRecord = [&] {
        const std::uint32_t ints[] = {1, 2};
        std::uint32_t size, error, type, number;
        std::int32_t count;
        std::uint8_t* const record =
            hlx_encodeRecord(1, 0, 4, blob, 4, blob, 0, 4, blob, 0, 2, ints, &size, &error);
        EXPECT_EQ(error, record ? 0u : 1u);
        if (!record) return false;
        char* blobs[3];
        std::uint32_t* copies;
        const bool isDecoded =
            hlx_decodeRecord(record, size, &type, &number, &blobs[0], &blobs[1], &number, &blobs[2],
                             &number, &count, &copies) == HLX_DONE;
        EXPECT_EQ(isDecoded, copies && blobs[0] && blobs[1] && blobs[2]);
        for (char* copy : blobs) std::free(copy);
        std::free(copies);
        std::free(record);
        return isDecoded;
    };
    EXPECT_EQ(FailEachAllocation(exchangeRecord), 5);
    const auto buildComposite = [&] {
        std::uint32_t size = 0;
        std::int32_t error = 0;
        std::uint8_t* const message = hlx_buildComposite(4, blob, 4, blob, 4, blob, &size, &error);
        EXPECT_EQ(error, message ? 0 : 1);
        std::free(message);
        return message != nullptr;
    };
    EXPECT_EQ(FailEachAllocation(buildComposite), 1);
    const auto send = [&] {  // no further than its frame, as nobody has started the sockets
        return hlx_sendCommandTcp(kHlxTcpPort, 1, blob, 4, nullptr) != HLX_NO_MEMORY;
    };
    EXPECT_EQ(FailEachAllocation(send), 1);
}

TEST(Memory, RunsOutInTheLogAndTheAllocator) {
    const TempPath path("memory");
    const auto openLog = [&] {
        HlxLogContext* log = nullptr;
        if (hlx_logCreate(&log, "program", 0, 0) != HLX_DONE) return false;
        const HlxResult console = hlx_logAddSink(log, HLX_SINK_CONSOLE, nullptr);
        const HlxResult opened = hlx_logAddSink(log, HLX_SINK_FILE, path.c_str());
        hlx_logDestroy(log);
        return console == HLX_DONE && opened == HLX_DONE;
    };
    FailEachAllocation(openLog);
    const auto copyText = [] {
        char* const copy = hlxstrdup("text");
        if (copy) hlxfree(copy);
        return copy != nullptr;
    };
    const std::uint32_t failed = g_mf_failed_malloc;
    EXPECT_EQ(FailEachAllocation(copyText), 1);
    EXPECT_EQ(g_mf_failed_malloc, failed + 1);
}

}  // namespace
