#include "CplPath.h"

#include <string>

#include "hlxRegistryKey.h"

namespace {
constexpr char kCplsKey[] = R"(SOFTWARE\Microsoft\Windows\CurrentVersion\Control Panel\Cpls)";
constexpr char kCplsValue[] = "Tessara Link ";  // with the blank
constexpr DWORD kPathCapacity = 8191;
}  // namespace

const char* GetCplPath() {
    static std::string path;
    if (path.empty())
        path = CHlxRegistryKey(HKEY_LOCAL_MACHINE, kCplsKey).ReadText(kCplsValue, kPathCapacity);
    return path.c_str();
}
