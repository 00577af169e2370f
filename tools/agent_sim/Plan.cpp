#include "Plan.h"

#include <string_view>

#include "Arguments.h"
#include "AgentDirectory.h"
#include "Notification.h"
#include "RegistryKey.h"
#include "hlxInterface.h"

namespace agent_sim {
namespace {

// agent_sim's own key, below that of the agent.
const std::string kPlanKey = HLX_AGENT_KEY + std::string("\\simulation");
constexpr char kReassess[] = "Reassess";
constexpr char kDownloads[] = "Downloads";
constexpr char kPackageFile[] = "PackageFile";
constexpr char kInstallResult[] = "InstallResult";

constexpr std::string_view kFails = "fail";
constexpr std::string_view kSucceeds = "succeed";

std::string_view FirstStep(std::string_view outcomes) {
    return outcomes.substr(0, outcomes.find(','));
}

}  // namespace

void Plan::CheckReassess(const std::string& answer) {
    if (answer != "next" && answer != "same") CheckState(answer);
}

void Plan::CheckDownloads(const std::string& outcomes) {
    for (std::string_view rest = outcomes;;) {
        const auto step = FirstStep(rest);
        if (step != kFails && step != kSucceeds)
            throw UsageError("a download can 'fail' or 'succeed', not '" + std::string(step) + "'");
        if (step.size() == rest.size()) return;
        rest.remove_prefix(step.size() + 1);
    }
}

void Plan::SetReassess(const std::string& answer) {
    RegistryKey(kPlanKey, RegistryKey::For::kWriting).SetText(kReassess, answer);
}

void Plan::SetDownloads(const std::string& outcomes) {
    RegistryKey(kPlanKey, RegistryKey::For::kWriting).SetText(kDownloads, outcomes);
}

void Plan::SetPackage(const Package& package) {
    RegistryKey key(kPlanKey, RegistryKey::For::kWriting);
    key.SetText(kPackageFile, package.file);
    key.SetNumber(kInstallResult, package.installResult);
}

std::string Plan::Reassessed(const std::string& state) const {
    auto answer =
        RegistryKey(kPlanKey, RegistryKey::For::kReading).Text(kReassess).value_or("next");
    if (answer == "same") return state;
    if (answer != "next") return answer;
    return state == "low" ? "medium" : state == "medium" ? "high" : "low";
}

Outcome Plan::NextDownload() {
    RegistryKey key(kPlanKey, RegistryKey::For::kWriting);
    const std::string outcomes = key.Text(kDownloads).value_or(std::string(kSucceeds));
    const auto step = FirstStep(outcomes);
    if (step.size() < outcomes.size()) key.SetText(kDownloads, outcomes.substr(step.size() + 1));
    return step == kFails ? Outcome::kFails : Outcome::kSucceeds;
}

Package Plan::InstalledPackage() const {
    const RegistryKey key(kPlanKey, RegistryKey::For::kReading);
    Package package;
    package.file = key.Text(kPackageFile).value_or("");
    package.installResult = key.Number(kInstallResult).value_or(package.installResult);
    return package;
}

}  // namespace agent_sim
