// Lines written to a file, each flushed at once, and statements that do not pass.

#include <spdlog/pattern_formatter.h>
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/spdlog.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <filesystem>
#include <memory>

#include "comparison.h"
#include "hlxLog.h"

namespace {

std::string LogPath() {
    static const std::string path =
        std::filesystem::temp_directory_path() / ("bench-log-" + std::to_string(getpid()));
    return path;
}

// Each works on one log for all its threads, which the first one opens and closes.
template <class Log, class Write>
auto OnOneLog(std::uint32_t prefix, Write write) {
    static std::unique_ptr<Log> log;
    return [=](benchmark::State& state) {
        if (state.thread_index() == 0) log = std::make_unique<Log>(prefix);
        for (auto _ : state) write(*log);
        if (state.thread_index() != 0) return;
        log.reset();
        std::filesystem::remove(LogPath());
    };
}

struct OurLog {
    explicit OurLog(std::uint32_t prefix) {
        hlx_logCreate(&context, "bench", 0, prefix | HLX_LOG_TRUNCATE);
        hlx_logAddSink(context, HLX_SINK_FILE, LogPath().c_str());
        hlx_logSetDefault(context);
    }
    ~OurLog() {
        hlx_logSetDefault(nullptr);
        hlx_logDestroy(context);
    }
    HlxLogContext* context = nullptr;
};

// spdlog has no flag for the number of a line.
class LineNumber : public spdlog::custom_flag_formatter {
public:
    void format(const spdlog::details::log_msg&, const std::tm&,
                spdlog::memory_buf_t& line) override {
        spdlog::fmt_lib::format_to(std::back_inserter(line), "{:6}", m_count++);
    }
    std::unique_ptr<custom_flag_formatter> clone() const override {
        return std::make_unique<LineNumber>();
    }

private:
    unsigned m_count = 0;
};

struct SpdLog {
    explicit SpdLog(std::uint32_t prefix)
        : logger("bench", std::make_shared<spdlog::sinks::basic_file_sink_mt>(LogPath(), true)) {
        auto formatter = std::make_unique<spdlog::pattern_formatter>();
        formatter->add_flag<LineNumber>('*').set_pattern(prefix ? "%n %* %H:%M:%S %v" : "%v");
        logger.set_formatter(std::move(formatter));
        logger.flush_on(spdlog::level::trace);
    }
    spdlog::logger logger;
};

struct Stream {
    explicit Stream(std::uint32_t) {}
    ~Stream() { std::fclose(file); }
    std::FILE* file = std::fopen(LogPath().c_str(), "w");
};

void WriteOurs(OurLog&) {
    hlx_log(hlx_logGetDefault(), 1, HLX_AREA_INTEGRITY, "message %d of %s", 42, "many");
}

void WriteSpdLog(SpdLog& log) { log.logger.info("message {} of {}", 42, "many"); }

void WriteStream(Stream& log) {
    std::fprintf(log.file, "message %d of %s\n", 42, "many");
    std::fflush(log.file);
}

void RegisterLines(int threads) {
    constexpr std::uint32_t kPrefix = HLX_LOG_PROGNAME | HLX_LOG_LINE_NUMBER | HLX_LOG_TIME;
    const std::string work = "log line with name, number and time, flushed, " +
                             std::to_string(threads) + (threads == 1 ? " thread" : " threads");
    for (auto* const candidate :
         {Compare(work, "ours", 0, OnOneLog<OurLog>(kPrefix, WriteOurs)),
          Compare(work, "spdlog", 0.95, OnOneLog<SpdLog>(kPrefix, WriteSpdLog))})
        if (threads > 1) candidate->Threads(threads)->UseRealTime();
}

std::atomic<int> g_level = 1;

}  // namespace

void RegisterLog() {
    RegisterLines(1);
    RegisterLines(4);
    constexpr char kPlain[] = "log line without prefix, flushed";
    Compare(kPlain, "ours", 0, OnOneLog<OurLog>(0, WriteOurs));
    Compare(kPlain, "spdlog", 0.95, OnOneLog<SpdLog>(0, WriteSpdLog));
    Compare(kPlain, "fprintf and fflush", 1.05, OnOneLog<Stream>(0, WriteStream));

    constexpr char kFiltered[] = "log statement that does not pass";
    Compare(kFiltered, "ours", 0, OnOneLog<OurLog>(0, [](OurLog&) {
                hlx_log(hlx_logGetDefault(), 4, HLX_AREA_INTEGRITY, "message %d of %s", 42, "many");
            }));
    Compare(kFiltered, "spdlog", 0.1, OnOneLog<SpdLog>(0, [](SpdLog& log) {
                log.logger.debug("message {} of {}", 42, "many");
            }));
    Compare(kFiltered, "a bare if", 1.5, OnOneLog<Stream>(0, [](Stream& log) {
                if (g_level.load(std::memory_order_relaxed) >= 4) WriteStream(log);
            }));
}
