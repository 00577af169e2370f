#include "AgentPaths.h"

#include <string>

#include "hlxAgentKey.h"

const char* GetHealthNotifPath() {
    static const std::string path = hlx_agentFile("healthnotif.txt");
    return path.c_str();
}

const char* GetSwCachePath() {
    static const std::string path = hlx_agentFile("swcache");
    return path.c_str();
}
