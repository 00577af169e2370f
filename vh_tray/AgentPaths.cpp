#include "AgentPaths.h"

#include <windows.h>

#include <string>

#include "RegistryKey.h"
#include "hlxAgentKey.h"

namespace {

constexpr DWORD kDirectoryCapacity = 2048;

std::string PathInAgentDirectory(const char* fileName) {
    std::string path;
    if (const CRegistryKey key(HKEY_LOCAL_MACHINE, kHlxAgentKey); key.IsOpen()) {
        path = key.ReadText(nullptr, kDirectoryCapacity);
        if (!path.empty() && path.back() != '\\') path += '\\';
    }
    return path + fileName;
}

}  // namespace

const char* GetHealthNotifPath() {
    static const std::string path = PathInAgentDirectory("healthnotif.txt");
    return path.c_str();
}

const char* GetSwCachePath() {
    static const std::string path = PathInAgentDirectory("swcache");
    return path.c_str();
}
