// Out of memory in every operation that allocates: the first allocation fails, then the second, and
// so on until none fails. No run may leak, crash or return partial results.
//
// The program wraps malloc, calloc and free (linker option --wrap), and its operator new uses them.

#include "ExpatLibrary.h"
#include "hex.h"
#include "hlxCommand.h"
#include "hlxComposite.h"
#include "hlxHealthReport.h"
#include "hlxInterface.h"
#include "hlxLog.h"
#include "hlxMalloc.h"
#include "hlxOwned.h"
#include "record_contents.h"
#include "temp_path.h"

namespace {

int g_callsLeft = 0;  // until the one that fails
int g_blocks = 0;     // allocated and not released

void* Count(void* block) {
    g_blocks += block != nullptr;
    return block;
}

}  // namespace

extern "C" {
void* __real_malloc(std::size_t size);
void* __real_calloc(std::size_t count, std::size_t size);
void __real_free(void* block);

void* __wrap_malloc(std::size_t size) {
    return --g_callsLeft == 0 ? nullptr : Count(__real_malloc(size));
}
void* __wrap_calloc(std::size_t count, std::size_t size) {
    return --g_callsLeft == 0 ? nullptr : Count(__real_calloc(count, size));
}
void __wrap_free(void* block) {
    g_blocks -= block != nullptr;
    __real_free(block);
}
}

void* operator new(std::size_t size) {
    if (void* const block = std::malloc(size)) return block;
    throw std::bad_alloc();
}
// Not inlined: the compiler would report memory of operator new that is released with free.
[[gnu::noinline]] void operator delete(void* block) noexcept { std::free(block); }
[[gnu::noinline]] void operator delete(void* block, std::size_t) noexcept { std::free(block); }

namespace {

// Runs the operation once for each of its allocations, with that allocation failing. The operation
// returns whether it succeeded, and releases its results. Returns the number of allocations.
int FailEachAllocation(const std::function<bool()>& operation) {
    for (int failing = 1;; ++failing) {
        const int blocks = g_blocks;
        g_callsLeft = failing;
        const bool gotAll = operation();
        const bool hasFailed = g_callsLeft <= 0;
        g_callsLeft = 0;
        EXPECT_EQ(g_blocks, blocks) << "leaks if allocation " << failing << " fails";
        EXPECT_EQ(gotAll, !hasFailed) << "allocation " << failing;
        if (!hasFailed) return failing - 1;
    }
}

TEST(Memory, RunsOutInTheHealthReader) {
    ASSERT_NE(hlx_expatFunctions(), nullptr);
    EXPECT_THROW(throw std::bad_alloc(), std::bad_alloc) << "what the runtime keeps for throwing";
    int withoutRawResult = 0;
    FailEachAllocation([&] {
        HealthReport read;
        const HlxResult result = read.Read(
            "<HLXHealthResult><Message popup='a value that is long enough for the heap'>text"
            "</Message><Browser url='a'/><RestrictIP>1.1.1.1-2.2.2.2</RestrictIP>"
            "</HLXHealthResult>");
        const bool gotRest = read.message && read.url && read.restrictAddresses;
        withoutRawResult += result == HLX_NO_MEMORY && gotRest && !read.rawResult;
        return result == HLX_DONE && gotRest && read.rawResult;
    });
    hlx_unloadExpat();
    EXPECT_EQ(withoutRawResult, 1);
}

TEST(Memory, RunsOutInRecordsMessagesAndFrames) {
    const auto* const blob = B("blob");
    const auto exchangeRecord = [&] {
        const std::uint32_t ints[] = {1, 2};
        std::uint32_t size, error;
        const HlxBlock<std::uint8_t> record(
            hlx_encodeRecord(1, 0, 4, blob, 4, blob, 0, 4, blob, 0, 2, ints, &size, &error));
        EXPECT_EQ(error, record ? 0u : 1u);
        if (!record) return false;
        const RecordContents read(record.get(), size);
        const bool gotAll = read.ints && read.blobs[0] && read.blobs[1] && read.blobs[2];
        EXPECT_EQ(read.result == HLX_DONE, gotAll);
        return gotAll;
    };
    EXPECT_EQ(FailEachAllocation(exchangeRecord), 5);
    const auto buildComposite = [&] {
        std::uint32_t size;
        std::int32_t error;
        const HlxBlock<std::uint8_t> message(
            hlx_buildComposite(4, blob, 4, blob, 4, blob, &size, &error));
        EXPECT_EQ(error, message ? 0 : 1);
        return message != nullptr;
    };
    EXPECT_EQ(FailEachAllocation(buildComposite), 1);
    HKEY key = nullptr;
    RegCreateKeyExA(HKEY_LOCAL_MACHINE, HLX_AGENT_KEY, 0, nullptr, 0, KEY_WRITE, nullptr, &key,
                    nullptr);
    RegSetValueExA(key, "UseTCP", 0, REG_DWORD, B("\1\0\0"), 4);
    RegCloseKey(key);
    FailEachAllocation([] {  // only up to the frame, since the sockets are not initialised
        g_useTcp = -1;
        return hlx_requestReassess() == WSANOTINITIALISED && g_useTcp == 1;
    });
}

TEST(Memory, RunsOutInTheLogAndTheAllocator) {
    const TempPath path("memory");
    const auto openLog = [&] {
        HlxLogContext* log = nullptr;
        if (hlx_logCreate(&log, "program", 0, 0) != HLX_DONE) return false;
        const HlxOwned<HlxLogContext*, hlx_logDestroy> owner(log);
        const bool opensConsole = hlx_logAddSink(log, HLX_SINK_CONSOLE, nullptr) == HLX_DONE;
        const bool opensFile = hlx_logAddSink(log, HLX_SINK_FILE, path.c_str()) == HLX_DONE;
        return (hlx_logAddSink(log, HLX_SINK_EVENT_LOG, nullptr) == HLX_DONE) && opensConsole &&
               opensFile;
    };
    EXPECT_TRUE(openLog()) << "what the simulator keeps for handles";
    FailEachAllocation(openLog);
    const auto copyText = [] {
        const HlxOwned<char*, hlxfree> copy(hlxstrdup("text"));
        return copy != nullptr;
    };
    const std::uint32_t failed = g_mf_failed_malloc;
    EXPECT_EQ(FailEachAllocation(copyText), 1);
    EXPECT_EQ(g_mf_failed_malloc, failed + 1);
}

}  // namespace
