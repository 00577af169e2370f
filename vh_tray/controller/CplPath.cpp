#include "controller/CplPath.h"

#include <string>

#include "hlxInterface.h"
#include "hlxRegistryKey.h"

namespace {
constexpr DWORD kPathCapacity = 8191;
}  // namespace

const char* GetCplPath() {
    static std::string path;
    if (path.empty())
        path = CHlxRegistryKey(HKEY_LOCAL_MACHINE, HLX_CPLS_KEY)
                   .ReadText(HLX_CPLS_VALUE, kPathCapacity);
    return path.c_str();
}
