// Feeds texts with numbers in them, a version and the log's environment.

#include "harness.h"
#include "hlxLog.h"
#include "updates/NewerVersion.h"

void Fuzz(Bytes input) {
    const std::string text = Text(input).c_str();
    IsNewerVersion(text.c_str());
    for (const char* name : {"F_TRACE_PATH", "F_TRACE_LEVEL", "F_TRACE_MASK"})
        setenv(name, text.c_str(), 1);
    std::int32_t level = 5;
    std::uint32_t mask = 9;
    std::string path;
    hlx_logReadEnv("F", &level, &mask, path);
    Require(path == text && level >= 0 && level <= HLX_MAXIMUM_LOG_LEVEL);
}
