// What the daemon writes about software updates: the offer in the cache file, and the results of
// downloads and installations in the registry.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace agent_sim {

struct Offer {
    std::string name;
    std::string version;  // four numbers, "4.2.8-1"
    std::string third;
    std::string fourth;
};

// All functions throw std::runtime_error or std::filesystem::filesystem_error if they fail.
void WriteOffer(const Offer& offer);
void WithdrawOffer();
std::optional<Offer> ReadOffer();

// One value of a result key.
struct Result {
    std::string name;
    std::uint32_t code;
    std::optional<std::int64_t> age;  // in seconds; nothing: no time recorded
};

void RecordInstall(const Result& result);
void RecordDownload(const Result& result);
std::vector<Result> InstallResults();
std::vector<Result> DownloadResults();
void ClearResults();

// The outcome of a download.
enum class Outcome { kSucceeds, kFails };

// The file that is reported as installed, and the result code.
struct Package {
    std::string file;  // empty: a name made from the offer; no such file exists
    std::uint32_t installResult = 3010;
};

// Simulates the download that the applet requested. On failure, records all files that failed
// before, or else the offered one, as failed now. On success, records them as downloaded, records
// the installation and deletes the offer. Logs each step.
void PlayDownload(Outcome outcome, const Package& package);

}  // namespace agent_sim
