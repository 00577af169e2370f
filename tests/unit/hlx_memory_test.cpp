// Out of memory in every operation that allocates: the first allocation fails, then the second, and
// so on until none fails. No run may leak, crash or return partial results.
#include <malloc.h>

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
#include "simulator/allocations.h"
#include "temp_path.h"

namespace {

// Runs the operation for each of its allocations, with that allocation failing. The operation
// returns whether it succeeded, and releases its results. Returns the number of allocations. Only
// the last of several runs shows a leak: the runtime keeps blocks from the first run, the allocator
// up to seven of each size.
int FailEachAllocation(const std::function<bool()>& operation) {
    for (int failing = 1;; ++failing) {
        std::size_t before = 0;
        bool hasFailed = false;
        for (int run = 0; run < 10; ++run) {
            before = mallinfo2().uordblks;
            CountAllocations(failing);
            const bool gotAll = operation();
            hasFailed = AllocationsCounted() >= failing;
            CountAllocations(0);
            EXPECT_TRUE(gotAll || hasFailed);
        }
        EXPECT_EQ(mallinfo2().uordblks, before) << "leaks if allocation " << failing << " fails";
        if (!hasFailed) return failing - 1;
    }
}

TEST(Memory, RunsOutInTheHealthReader) {
    ASSERT_NE(hlx_expatFunctions(), nullptr);
    bool canLackRawResult = false;
    FailEachAllocation([&] {
        HealthReport read;
        const HlxResult result = read.Read(
            "<HLXHealthResult><Message popup='a value that is long enough for the heap'>text"
            "</Message><Browser url='a'/><RestrictIP>1.1.1.1-2.2.2.2</RestrictIP>"
            "</HLXHealthResult>");
        const bool gotRest = read.message && read.url && read.restrictAddresses;
        canLackRawResult |= result == HLX_NO_MEMORY && gotRest && !read.rawResult;
        return result == HLX_DONE && gotRest && read.rawResult;
    });
    hlx_unloadExpat();
    EXPECT_TRUE(canLackRawResult);
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
    FailEachAllocation(openLog);
    const auto copyText = [] {
        const HlxOwned<char*, hlxfree> copy(hlxstrdup("text"));
        return copy != nullptr;
    };
    const std::uint32_t failed = g_mf_failed_malloc;
    EXPECT_EQ(FailEachAllocation(copyText), 1);
    EXPECT_GT(g_mf_failed_malloc, failed);
}

}  // namespace
