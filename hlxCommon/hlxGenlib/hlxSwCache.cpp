#include "hlxSwCache.h"

#include <io.h>
#include <share.h>

#include <cstdio>
#include <memory>
#include <string_view>

#include "hlxLog.h"

namespace {

constexpr int kOwnerWritesAllRead = 022;  // the file-creation mask

using File = std::unique_ptr<std::FILE, decltype(&std::fclose)>;

File Open(const char* path, const char* mode) {
    return {_fsopen(path, mode, _SH_DENYNO), &std::fclose};
}

void ReadField(std::FILE* file, std::string_view delimiters, char* field, std::uint32_t size) {
    std::uint32_t length = 0;
    for (;;) {
        const int c = std::fgetc(file);
        if (c == EOF || delimiters.find(static_cast<char>(c)) != delimiters.npos) break;
        if (length == size - 1) break;
        field[length++] = static_cast<char>(c);
    }
    field[length] = 0;
}

}  // namespace

HlxResult hlx_getSwCache(const char* path, char* name, std::uint32_t nameSize, char* version,
                         std::uint32_t versionSize, char* third, std::uint32_t thirdSize,
                         char* fourth, std::uint32_t fourthSize) {
    if (!name || !version || !third || !fourth) return HLX_REFUSED;
    if (!nameSize || !versionSize || !thirdSize || !fourthSize) return HLX_REFUSED;
    const File file = Open(path, "r");
    if (!file) {
        hlx_log(hlx_logGetDefault(), 1, HLX_AREA_SWCACHE, "hlx_getSwCache: unable to open %s",
                path);
        return HLX_NO_FILE;
    }
    ReadField(file.get(), ":\n", name, nameSize);
    ReadField(file.get(), ":\n", version, versionSize);
    ReadField(file.get(), ":\n", third, thirdSize);
    ReadField(file.get(), "\n", fourth, fourthSize);
    return HLX_DONE;
}

HlxResult hlx_setSwCache(const char* path, const char* name, const char* version, const char* third,
                         const char* fourth) {
    const int oldMask = _umask(kOwnerWritesAllRead);
    File file = Open(path, "w");
    const HlxResult result = file ? HLX_DONE : HLX_NO_FILE;
    if (file)
        std::fprintf(file.get(), "%s:%s:%s:%s\n", name, version, third, fourth);
    else
        hlx_log(hlx_logGetDefault(), 1, HLX_AREA_SWCACHE, "hlx_setSwCache: unable to open %s",
                path);
    file.reset();
    _umask(oldMask);
    return result;
}

HlxResult hlx_removeSwCache(const char* path) {
    if (_unlink(path) == 0) return HLX_DONE;
    hlx_log(hlx_logGetDefault(), 1, HLX_AREA_SWCACHE,
            "hlx_getSwCache: Could not remove cache file %s", path);
    return HLX_NO_FILE;
}
