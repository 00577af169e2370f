// What the daemon leaves behind about software updates: the offer in the cache file, and the
// results of downloads and installations in the registry.
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

// All throw std::runtime_error or std::filesystem::filesystem_error if they fail.
void WriteOffer(const Offer& offer);
void WithdrawOffer();
std::optional<Offer> ReadOffer();

// One value of a result key.
struct Result {
    std::string name;
    std::uint32_t code;
    std::optional<std::int64_t> age;  // seconds since then; nothing: no time was recorded
};

void RecordInstall(const Result& result);
void RecordDownload(const Result& result);
std::vector<Result> InstallResults();
std::vector<Result> DownloadResults();
void ClearResults();

// How the daemon's next download ends.
enum class Outcome { kSucceeds, kFails };

// The file that an update is said to be installed from, and what came of it.
struct Package {
    std::string file;  // empty: named after the offer, and on no disk
    std::uint32_t installResult = 3010;
};

// Plays the download that the applet has asked for. A failure records every file that failed
// before, or else the offered one, as failed just now. A success does the opposite, installs the
// offer and withdraws it. Says what it does.
void PlayDownload(Outcome outcome, const Package& package);

}  // namespace agent_sim
