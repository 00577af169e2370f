// Feeds the registry with value files of any bytes: a walk over update results gives what is one,
// and ends.
#include <windows.h>

#include <filesystem>

#include "harness.h"
#include "hlxRegistryKey.h"
#include "updates/UpdateResultStore.h"

namespace {

template <bool (CRecordWalk::*Next)()>
void Walk(HKEY key, const std::vector<Bytes>& files) {
    std::size_t count = 0;
    for (CRecordWalk walk(key); (walk.*Next)(); ++count) {
        const auto endsWithRecord = [bytes = &walk.Record()](Bytes file) {
            return file.size() >= 20 && !std::memcmp(file.data() + file.size() - 12, bytes, 12);
        };
        Require(std::ranges::any_of(files, endsWithRecord));
    }
    Require(count <= files.size());
}

}  // namespace

// Each file has its size in front of it, in one byte.
void Fuzz(Bytes input) {
    static const std::filesystem::path folder = ScratchPath() + "/HKEY_LOCAL_MACHINE/k";
    setenv("WIN32_REGISTRY", ScratchPath().c_str(), 1);
    std::filesystem::create_directories(folder);
    std::vector<Bytes> files;
    for (Bytes rest = input; !rest.empty() && files.size() < 8;) {
        const std::size_t length = std::min<std::size_t>(rest[0], rest.size() - 1);
        files.push_back(rest.subspan(1, length));
        rest = rest.subspan(1 + length);
        WriteBytes(folder / ("=" + std::string(1, "abcdefgh"[files.size() - 1])), files.back());
    }
    const CHlxRegistryKey key(HKEY_LOCAL_MACHINE, "k");
    Walk<&CRecordWalk::NextBinaryRecord>(key, files);
    Walk<&CRecordWalk::NextRecordOfAnyType>(key, files);
    for (const char* name : {"a", "b", ""}) Require(key.ReadText(name, 20).size() <= 20);
    std::filesystem::remove_all(ScratchPath());
}
