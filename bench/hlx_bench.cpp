// What the common library costs: a health document read, a log statement that does not pass and one
// that does, a record encoded and decoded.

#include <benchmark/benchmark.h>

#include <cstdlib>

#include "ExpatLibrary.h"
#include "hlxHealthResult.h"
#include "hlxLog.h"
#include "hlxMalloc.h"
#include "hlxRecord.h"

namespace {

constexpr char kDocument[] =
    "<HLXHealthResult version=\"1.0\"><AutoInstall>yes</AutoInstall><Enabled>true</Enabled>"
    "<HealthState>medium</HealthState><DisplayHealthIcon>true</DisplayHealthIcon>"
    "<Message popup=\"true\">Please contact your administrator.</Message>"
    "<Browser popup=\"false\" url=\"howto.html\"/><RestrictIP>10.0.0.1-10.0.0.254</RestrictIP>"
    "</HLXHealthResult>";

void ReadHealthDocument(benchmark::State& state) {
    const bool unloads = state.range(0) != 0;
    for (auto _ : state) {
        std::uint32_t flags[7];
        char* texts[3] = {};
        std::uint32_t* addresses = nullptr;
        hlx_parseHealthResult(kDocument, &flags[0], &flags[1], &flags[2], &flags[3], &texts[0],
                              &texts[1], &flags[4], &texts[2], &flags[5], &flags[6], &addresses);
        for (char* text : texts) hlxfree(text);
        hlxfree(addresses);
        if (unloads) hlx_unloadExpat();
    }
}
BENCHMARK(ReadHealthDocument)->ArgName("unload")->Arg(0)->Arg(1);

void Log(benchmark::State& state) {
    HlxLogContext* log = nullptr;
    hlx_logCreate(&log, "bench", 0, HLX_LOG_PROGNAME | HLX_LOG_LINE_NUMBER | HLX_LOG_TIME);
    for (auto _ : state) hlx_log(log, static_cast<std::int32_t>(state.range(0)), 0x10, "%d", 1);
    hlx_logDestroy(log);
}
BENCHMARK(Log)->ArgName("level")->Arg(2)->Arg(1);

void EncodeAndDecodeRecord(benchmark::State& state) {
    const std::uint32_t ints[] = {1, 2, 3, 4};
    const auto* const blob = reinterpret_cast<const std::uint8_t*>("sixteen bytes it");
    for (auto _ : state) {
        std::uint32_t size = 0, error = 0, type, value, *copies;
        std::int32_t count;
        char* blobs[3];
        std::uint8_t* const record =
            hlx_encodeRecord(1, 1, 16, blob, 16, blob, 2, 16, blob, 3, 4, ints, &size, &error);
        hlx_decodeRecord(record, size, &type, &value, &blobs[0], &blobs[1], &value, &blobs[2],
                         &value, &count, &copies);
        std::free(record);
        for (char* copy : blobs) std::free(copy);
        std::free(copies);
    }
}
BENCHMARK(EncodeAndDecodeRecord);

}  // namespace
