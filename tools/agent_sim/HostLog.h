// agent_sim as a host of the trace log. All of its output is log statements, written to the console
// and optionally to a file. The statements of the common library go to the same sinks.
#pragma once

#include <cstdint>
#include <string>

#include "Arguments.h"
#include "hlxLog.h"
#include "hlxOwned.h"

namespace agent_sim {

enum Level : std::int32_t { kError = 1, kNotice = 3, kDetail = 4 };

// Writes one line to the log.
void Say(Level level, const std::string& line);

struct LogSettings {
    std::int32_t level = kDetail;
    std::uint32_t mask = 0;
    std::uint32_t options = 0;
    std::string path;  // empty: no file
    bool quiet = false;
};

// Reads the settings from the environment ("HLX_DAEMON_TRACE_LEVEL" and the others), then from the
// log options of the command line, which take precedence and are removed. Throws UsageError.
LogSettings TakeLogSettings(Arguments& arguments);

class HostLog {
public:
    // Throws std::runtime_error if a sink cannot be opened.
    explicit HostLog(const LogSettings& settings);
    ~HostLog();

    // Rotates a log file that is too large. Call it while no other thread writes.
    void Rotate();

private:
    HlxOwned<HlxLogContext*, hlx_logDestroy> context_;
    std::string path_;
};

}  // namespace agent_sim
