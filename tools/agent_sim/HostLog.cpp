#include "HostLog.h"

#include <algorithm>
#include <array>
#include <new>
#include <stdexcept>
#include <string_view>

namespace agent_sim {
namespace {

constexpr std::uint32_t kAgentArea = 0x01;  // a mask bit that the common library does not use

struct NamedOption {
    std::string_view name;
    HlxLogOption bit;
};

constexpr std::array<NamedOption, 6> kOptions{{{"name", HLX_LOG_PROGNAME},
                                               {"pid", HLX_LOG_PID},
                                               {"line", HLX_LOG_LINE_NUMBER},
                                               {"date", HLX_LOG_DATE},
                                               {"time", HLX_LOG_TIME},
                                               {"truncate", HLX_LOG_TRUNCATE}}};

std::uint32_t ParseOptions(std::string_view list) {
    std::uint32_t bits = 0;
    while (!list.empty()) {
        const auto name = list.substr(0, list.find(','));
        list.remove_prefix(std::min(name.size() + 1, list.size()));
        std::uint32_t bit = 0;
        for (const NamedOption& option : kOptions)
            if (option.name == name) bit = option.bit;
        if (!bit && name != "none")
            throw UsageError("'" + std::string(name) + "' is not a log option");
        bits |= bit;
    }
    return bits;
}

void AddSink(HlxLogContext* context, HlxLogSinkType type, const void* argument,
             const std::string& what) {
    if (hlx_logAddSink(context, type, argument) != HLX_DONE)
        throw std::runtime_error("cannot log to " + what);
}

}  // namespace

void Say(Level level, const std::string& line) {
    hlx_log(hlx_logGetDefault(), level, kAgentArea, "%s", line.c_str());
}

LogSettings TakeLogSettings(Arguments& arguments) {
    LogSettings settings;
    // Without the area of the allocator, which logs the address of every block.
    settings.mask = kAgentArea | HLX_AREA_SWCACHE;
    hlx_logReadEnv("HLX_DAEMON", &settings.level, &settings.mask, settings.path);
    if (const auto wanted = arguments.TakeNumber("--log-level", {0, HLX_MAXIMUM_LOG_LEVEL}))
        settings.level = static_cast<std::int32_t>(*wanted);
    if (const auto wanted = arguments.TakeNumber("--log-mask", {0, UINT32_MAX}))
        settings.mask = static_cast<std::uint32_t>(*wanted);
    if (const auto wanted = arguments.TakeValue("--log")) settings.path = *wanted;
    settings.options = ParseOptions(arguments.TakeValue("--log-line").value_or("name,time"));
    settings.quiet = arguments.TakeFlag("--quiet");
    return settings;
}

HostLog::HostLog(const LogSettings& settings) : path_(settings.path) {
    HlxLogContext* context = nullptr;
    if (hlx_logCreate(&context, "agent_sim", 2, settings.options) != HLX_DONE)
        throw std::bad_alloc();
    context_.reset(context);
    hlx_logSetLevel(context, settings.level);
    hlx_logSetMask(context, settings.mask);
    const std::int32_t toStandardOutput = 1;
    if (!settings.quiet) AddSink(context, HLX_SINK_CONSOLE, &toStandardOutput, "the console");
    if (!path_.empty()) AddSink(context, HLX_SINK_FILE, path_.c_str(), path_);
    hlx_logSetDefault(context);
}

HostLog::~HostLog() { hlx_logSetDefault(nullptr); }

void HostLog::Rotate() {
    if (!path_.empty()) hlx_logRotate(context_.get(), path_.c_str());
}

}  // namespace agent_sim
