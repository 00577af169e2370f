#include "shared/AgentPaths.h"

#include <string>

#include "hlxAgentKey.h"
#include "hlxInterface.h"

const char* GetHealthNotifPath() {
    static const std::string path = hlx_agentFile(HLX_HEALTH_FILE);
    return path.c_str();
}

const char* GetSwCachePath() {
    static const std::string path = hlx_agentFile(HLX_SWCACHE_FILE);
    return path.c_str();
}
