#include "Updates.h"

#include <windows.h>

#include <array>
#include <filesystem>
#include <stdexcept>

#include "AgentDirectory.h"
#include "HostLog.h"
#include "RegistryKey.h"
#include "hlxInterface.h"
#include "hlxSwCache.h"

namespace agent_sim {
namespace {

constexpr std::uint32_t kFileNotFound = 0x80070002;  // a download code: negative is a failure
constexpr std::int64_t kTicksPerSecond = 10'000'000;
constexpr std::size_t kRecordSize = 12;
constexpr std::uint32_t kFieldCapacity = 8192;

std::uint64_t Now() {
    FILETIME now;
    GetSystemTimeAsFileTime(&now);
    return static_cast<std::uint64_t>(now.dwHighDateTime) << 32 | now.dwLowDateTime;
}

// Time and code, little-endian.
void Record(const char* key, const Result& result) {
    std::array<std::uint8_t, kRecordSize> bytes{};
    const std::uint64_t time =
        result.age ? Now() - static_cast<std::uint64_t>(*result.age * kTicksPerSecond) : 0;
    for (std::size_t at = 0; at < 8; ++at) bytes[at] = static_cast<std::uint8_t>(time >> 8 * at);
    for (std::size_t at = 0; at < 4; ++at)
        bytes[8 + at] = static_cast<std::uint8_t>(result.code >> 8 * at);
    RegistryKey(key, RegistryKey::For::kWriting).SetBytes(result.name, bytes);
}

std::uint64_t LittleEndian(const std::uint8_t* from, std::size_t size) {
    std::uint64_t number = 0;
    for (std::size_t at = 0; at < size; ++at)
        number |= static_cast<std::uint64_t>(from[at]) << 8 * at;
    return number;
}

std::vector<Result> ReadResults(const char* path) {
    std::vector<Result> results;
    const RegistryKey key(path, RegistryKey::For::kReading);
    for (const std::string& name : key.ValueNames()) {
        const auto bytes = key.Bytes(name);
        if (bytes.size() != kRecordSize) continue;
        const std::uint64_t time = LittleEndian(bytes.data(), 8);
        Result result{name, static_cast<std::uint32_t>(LittleEndian(bytes.data() + 8, 4)), {}};
        if (time) result.age = static_cast<std::int64_t>(Now() - time) / kTicksPerSecond;
        results.push_back(std::move(result));
    }
    return results;
}

bool IsFailure(const Result& result) { return static_cast<std::int32_t>(result.code) < 0; }

std::string PackageName(const std::optional<Offer>& offer) {
    return offer ? offer->name + " " + offer->version + ".msi" : "update.msi";
}

}  // namespace

void WriteOffer(const Offer& offer) {
    const auto path = SwCachePath();
    if (hlx_setSwCache(path.string().c_str(), offer.name.c_str(), offer.version.c_str(),
                       offer.third.c_str(), offer.fourth.c_str()) != HLX_DONE)
        throw std::runtime_error("cannot write " + path.string());
    StampAhead(path);
}

void WithdrawOffer() {
    const auto path = SwCachePath();
    if (hlx_removeSwCache(path.string().c_str()) != HLX_DONE)
        throw std::runtime_error("cannot remove " + path.string());
}

std::optional<Offer> ReadOffer() {
    std::array<std::string, 4> fields;
    for (std::string& field : fields) field.resize(kFieldCapacity);
    const auto path = SwCachePath();
    if (!std::filesystem::exists(path)) return std::nullopt;
    if (hlx_getSwCache(path.string().c_str(), fields[0].data(), kFieldCapacity, fields[1].data(),
                       kFieldCapacity, fields[2].data(), kFieldCapacity, fields[3].data(),
                       kFieldCapacity) != HLX_DONE)
        return std::nullopt;
    return Offer{fields[0].c_str(), fields[1].c_str(), fields[2].c_str(), fields[3].c_str()};
}

void RecordInstall(const Result& result) { Record(HLX_INSTALL_RESULTS_KEY, result); }

void RecordDownload(const Result& result) { Record(HLX_DOWNLOAD_RESULTS_KEY, result); }

std::vector<Result> InstallResults() { return ReadResults(HLX_INSTALL_RESULTS_KEY); }

std::vector<Result> DownloadResults() { return ReadResults(HLX_DOWNLOAD_RESULTS_KEY); }

void ClearResults() {
    RegistryKey(HLX_INSTALL_RESULTS_KEY, RegistryKey::For::kWriting).DeleteAllValues();
    RegistryKey(HLX_DOWNLOAD_RESULTS_KEY, RegistryKey::For::kWriting).DeleteAllValues();
}

void PlayDownload(Outcome outcome, const Package& package) {
    const auto offer = ReadOffer();
    std::vector<std::string> files;
    for (const Result& result : DownloadResults())
        if (IsFailure(result)) files.push_back(result.name);
    if (files.empty()) files.push_back(PackageName(offer));

    const bool fails = outcome == Outcome::kFails;
    for (const std::string& file : files) {
        Say(kNotice, file + (fails ? " could not be downloaded" : " was downloaded"));
        RecordDownload({file, fails ? kFileNotFound : 0, 0});
    }
    if (fails || !offer) return;
    const std::string installed = package.file.empty() ? PackageName(offer) : package.file;
    RecordInstall({installed, package.installResult, 0});
    WithdrawOffer();
    Say(kNotice, offer->name + " " + offer->version + " was installed, result " +
                     std::to_string(package.installResult));
}

}  // namespace agent_sim
