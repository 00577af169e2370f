// The cache file read into its fields, against its line read into one buffer.

#include <unistd.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "comparison.h"
#include "hlxSwCache.h"

namespace {

constexpr std::uint32_t kFieldSize = 8192;

// A cache file whose four fields have this length.
class CacheFile {
public:
    explicit CacheFile(std::uint32_t fieldLength) {
        const std::string field(fieldLength, 'x');
        std::ofstream(m_path) << field << ":" << field << ":" << field << ":" << field << "\n";
    }
    CacheFile(const CacheFile&) = delete;
    ~CacheFile() { std::filesystem::remove(m_path); }

    const char* Path() const { return m_path.c_str(); }

private:
    const std::string m_path =
        std::filesystem::temp_directory_path() / ("bench-swcache-" + std::to_string(getpid()));
};

void ReadFields(benchmark::State& state, std::uint32_t fieldLength) {
    const CacheFile file(fieldLength);
    static std::array<char[kFieldSize], 4> fields;
    for (auto _ : state)
        hlx_getSwCache(file.Path(), fields[0], kFieldSize, fields[1], kFieldSize, fields[2],
                       kFieldSize, fields[3], kFieldSize);
}

void ReadLine(benchmark::State& state, std::uint32_t fieldLength) {
    const CacheFile file(fieldLength);
    static char line[4 * kFieldSize];
    for (auto _ : state) {
        std::FILE* const stream = std::fopen(file.Path(), "r");
        benchmark::DoNotOptimize(std::fgets(line, int{sizeof line}, stream));
        std::fclose(stream);
    }
}

}  // namespace

void RegisterCacheFile() {
    for (const std::uint32_t length : {10u, kFieldSize - 1}) {
        const std::string work =
            "cache file with fields of " + std::to_string(length) + " bytes, read";
        Compare(work, "ours", 0, [length](benchmark::State& state) { ReadFields(state, length); });
        Compare(work, "fopen and fgets", length == 10 ? 1.1 : 2.0,
                [length](benchmark::State& state) { ReadLine(state, length); });
    }
}
