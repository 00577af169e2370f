// A program of somebody else: logs to its standard output through the installed library.
#include <hlxLog.h>

int main() {
    HlxLogContext* log = nullptr;
    const std::int32_t toStdout = 1;
    if (hlx_logCreate(&log, "consumer", 0, HLX_LOG_PROGNAME) != HLX_DONE) return 1;
    hlx_logAddSink(log, HLX_SINK_CONSOLE, &toStdout);
    hlx_log(log, 1, HLX_AREA_INTEGRITY, "a line through the %s library", "installed");
    hlx_logDestroy(log);
}
