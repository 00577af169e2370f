// The stand-in as a host of the common library's trace log. All that it reports are log statements,
// written to the console and, if wanted, to a file; the library's own statements go the same way.
#pragma once

#include <cstdint>
#include <string>

#include "Arguments.h"
#include "hlxLog.h"

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

// The settings of the environment ("HLX_DAEMON_TRACE_LEVEL" and its kin) and, with precedence, of
// the log options on the command line, which are taken out of it. Throws UsageError.
LogSettings TakeLogSettings(Arguments& arguments);

class HostLog {
public:
    // Throws std::runtime_error if a sink cannot be opened.
    explicit HostLog(const LogSettings& settings);
    ~HostLog();
    HostLog(const HostLog&) = delete;
    HostLog& operator=(const HostLog&) = delete;

    // To be called now and then, while no other thread writes: moves a file that has grown too
    // large aside.
    void Rotate();

private:
    HlxLogContext* context_ = nullptr;
    std::string path_;
};

}  // namespace agent_sim
