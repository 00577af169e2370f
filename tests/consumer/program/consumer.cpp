// A program outside the project: with the installed library it reads a health notification and logs
// its state to standard output.
#include <hlxHealthReport.h>
#include <hlxLog.h>
#include <hlxParseConf.h>

int main() {
    HlxLogContext* log = nullptr;
    const std::int32_t toStdout = 1;
    if (hlx_logCreate(&log, "consumer", 0, HLX_LOG_PROGNAME) != HLX_DONE) return 1;
    hlx_logAddSink(log, HLX_SINK_CONSOLE, &toStdout);
    HealthReport health;
    if (health.Read("<HLXHealthResult><HealthState>high</HealthState></HLXHealthResult>") ==
        HLX_DONE)
        hlx_log(log, 1, HLX_AREA_INTEGRITY, "read state %u", health.state);
    hlx_logDestroy(log);
}
