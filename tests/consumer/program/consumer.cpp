// A program outside the project: with the installed library it reads a composite message and logs
// its contents to standard output.
#include <hlxComposite.h>
#include <hlxLog.h>

int main() {
    HlxLogContext* log = nullptr;
    const std::int32_t toStdout = 1;
    if (hlx_logCreate(&log, "consumer", 0, HLX_LOG_PROGNAME) != HLX_DONE) return 1;
    hlx_logAddSink(log, HLX_SINK_CONSOLE, &toStdout);
    const std::uint8_t message[] = {0, 0, 0, 1, 0, 0, 0, 1, 0, 0,   0,
                                    1, 0, 0, 0, 0, 0, 0, 0, 0, 'a', 'b'};
    std::uint32_t size1 = 0, size2 = 0;
    const std::uint8_t *blob1 = nullptr, *blob2 = nullptr;
    if (hlx_parseCompositeChecked(message, sizeof message, &size1, &blob1, &size2, &blob2, nullptr,
                                  nullptr) == HLX_DONE)
        hlx_log(log, 1, HLX_AREA_INTEGRITY, "%u '%c' and %u '%c'", size1, *blob1, size2, *blob2);
    hlx_logDestroy(log);
}
