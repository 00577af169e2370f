// How the stand-in answers what the applet asks for. The plan lies in the registry beside the
// agent's settings, so that a second agent_sim can change the answers of the one that listens.
#pragma once

#include <cstdint>
#include <string>

#include "Updates.h"

namespace agent_sim {

class Plan {
public:
    // Throw UsageError for words that are no plan; what else is here throws std::runtime_error if
    // the registry fails.
    static void CheckReassess(const std::string& answer);
    static void CheckDownloads(const std::string& outcomes);

    // "next" (low, medium, high and from the start again), "same", or a health state.
    void SetReassess(const std::string& answer);
    // "fail" and "succeed", separated by commas: one for each download, the last one for good.
    void SetDownloads(const std::string& outcomes);
    void SetPackage(const Package& package);

    // The state that follows `state` when the applet asks for a new assessment.
    std::string Reassessed(const std::string& state) const;
    // How the next download ends. Uses up one step of the plan, unless it is the last.
    Outcome NextDownload();
    Package InstalledPackage() const;
};

}  // namespace agent_sim
