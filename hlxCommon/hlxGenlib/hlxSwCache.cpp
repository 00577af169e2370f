#include "hlxSwCache.h"

#include <io.h>
#include <share.h>

#include <algorithm>
#include <cstdio>
#include <string_view>

#include "hlxLog.h"
#include "hlxOwned.h"

namespace {

constexpr int kOwnerWritesAllRead = 022;  // the file-creation mask

using File = HlxOwned<std::FILE*, std::fclose>;

File Open(const char* path, const char* mode) { return File(_fsopen(path, mode, _SH_DENYNO)); }

// The bytes of a file, read a block at a time.
class Bytes {
public:
    // The block is the only buffer.
    explicit Bytes(std::FILE* file) : m_file(file) { std::setvbuf(file, nullptr, _IONBF, 0); }

    // What has been read and not yet skipped; empty at the end of the file.
    std::string_view Ahead() {
        if (m_ahead.empty()) m_ahead = {m_block, std::fread(m_block, 1, sizeof m_block, m_file)};
        return m_ahead;
    }
    void Skip(std::size_t count) { m_ahead.remove_prefix(count); }

private:
    std::FILE* const m_file;
    char m_block[4096];
    std::string_view m_ahead;
};

// The position of the first delimiter, or the end.
std::size_t FindFirst(std::string_view delimiters, std::string_view text) {
    for (const char delimiter : delimiters) text = text.substr(0, text.find(delimiter));
    return text.size();
}

void ReadField(Bytes& bytes, std::string_view delimiters, char* field, std::uint32_t size) {
    std::size_t room = size - 1;
    for (std::string_view ahead = bytes.Ahead(); !ahead.empty(); ahead = bytes.Ahead()) {
        const std::size_t count = std::min(FindFirst(delimiters, ahead), room);
        field += ahead.copy(field, count);
        room -= count;
        const bool isBehindBlock = count == ahead.size();
        // Skips the byte that ends the field, too: a delimiter, or a byte that does not fit.
        bytes.Skip(isBehindBlock ? count : count + 1);
        if (!isBehindBlock) break;
    }
    *field = 0;
}

}  // namespace

std::uint32_t hlx_getSwCache(const char* path, char* name, std::uint32_t nameSize, char* version,
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
    Bytes bytes(file.get());
    ReadField(bytes, "\n:", name, nameSize);
    ReadField(bytes, "\n:", version, versionSize);
    ReadField(bytes, "\n:", third, thirdSize);
    ReadField(bytes, "\n", fourth, fourthSize);
    return HLX_DONE;
}

std::uint32_t hlx_setSwCache(const char* path, const char* name, const char* version,
                             const char* third, const char* fourth) {
    const int oldMask = _umask(kOwnerWritesAllRead);
    File file = Open(path, "w");
    const std::uint32_t result = file ? HLX_DONE : HLX_NO_FILE;
    if (file)
        std::fprintf(file.get(), "%s:%s:%s:%s\n", name, version, third, fourth);
    else
        hlx_log(hlx_logGetDefault(), 1, HLX_AREA_SWCACHE, "hlx_setSwCache: unable to open %s",
                path);
    file.reset();
    _umask(oldMask);
    return result;
}

std::uint32_t hlx_removeSwCache(const char* path) {
    if (_unlink(path) == 0) return HLX_DONE;
    // "hlx_getSwCache" in this text: part of the interface, do not correct.
    hlx_log(hlx_logGetDefault(), 1, HLX_AREA_SWCACHE,
            "hlx_getSwCache: Could not remove cache file %s", path);
    return HLX_NO_FILE;
}
