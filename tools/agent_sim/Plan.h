// The answers to requests of the applet. The plan is kept in the registry beside the settings of
// the agent, so that a second agent_sim can change the answers of the listening one.
#pragma once

#include <cstdint>
#include <string>

#include "Updates.h"

namespace agent_sim {

class Plan {
public:
    // Throw UsageError if the text is not valid. The other functions throw std::runtime_error if
    // the registry fails.
    static void CheckReassess(const std::string& answer);
    static void CheckDownloads(const std::string& outcomes);

    // "next" (low, medium, high, then low again), "same", or a health state.
    void SetReassess(const std::string& answer);
    // "fail" and "succeed", separated by commas: one for each download, the last one for all
    // others.
    void SetDownloads(const std::string& outcomes);
    void SetPackage(const Package& package);

    // The state to report after `state` when the applet requests a new assessment.
    std::string Reassessed(const std::string& state) const;
    // The outcome of the next download. Removes one step of the plan, unless it is the last.
    Outcome NextDownload();
    Package InstalledPackage() const;
};

}  // namespace agent_sim
