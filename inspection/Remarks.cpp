#include "inspection/Remarks.h"

#include "inspection/Sentence.h"

#include <map>

namespace ostrel::inspection {
namespace {

/// So many names are listed; the others are counted.
constexpr std::size_t listedNames = 10;

std::string quoted(const std::string& text)
{
    return '"' + text + '"';
}

void remarkOnEmptiness(std::vector<std::string>& remarks, const Plan& plan, const std::string& directory)
{
    if (plan.bundles.empty()) {
        remarks.push_back(quoted(directory) + " holds no bundle" +
                          (plan.hasFolders ? "; the directories in it are not entered" : ""));
        return;
    }
    const PlanSummary summary = summaryOf(plan);
    if (summary.skip == plan.bundles.size()) {
        remarks.push_back("the conditions admit none of " + counted(plan.bundles.size(), "bundle") +
                          "; 'ostrel-host explain' says why, and what would");
    }
}

void remarkOnPassedOver(std::vector<std::string>& remarks, const Plan& plan)
{
    if (plan.passedOver.empty()) {
        return;
    }
    std::string line = counted(plan.passedOver.size(), "file") + " passed over: ";
    for (std::size_t i = 0; i < plan.passedOver.size() && i < listedNames; ++i) {
        const PassedOver& file = plan.passedOver[i];
        line += (i == 0 ? "" : "; ") + quoted(file.file) + ": " + file.why;
    }
    if (plan.passedOver.size() > listedNames) {
        line += "; and " + std::to_string(plan.passedOver.size() - listedNames) + " more";
    }
    remarks.push_back(std::move(line));
}

void remarkOnTwins(std::vector<std::string>& remarks, const Plan& plan)
{
    std::map<std::string, std::vector<std::string>> files;
    for (const PlannedBundle& bundle : plan.bundles) {
        if (bundle.outcome == Outcome::start && bundle.componentName) {
            files[*bundle.componentName].push_back(bundle.file);
        }
    }
    for (const auto& [name, holders] : files) {
        if (holders.size() < 2) {
            continue;
        }
        std::string line = counted(holders.size(), "bundle") + " have the component name " + quoted(name) + ": ";
        for (const std::string& file : holders) {
            line += (&file == &holders.front() ? "" : ", ") + quoted(file);
        }
        remarks.push_back(line + "; the container knows the last one alone, so it stops only that one");
    }
}

} // namespace

std::vector<std::string> remarksOn(const Plan& plan, const std::string& directory)
{
    std::vector<std::string> remarks;
    remarkOnEmptiness(remarks, plan, directory);
    remarkOnPassedOver(remarks, plan);
    remarkOnTwins(remarks, plan);
    return remarks;
}

std::vector<std::string> remarksOnConditions(const Conditions& conditions, const Vocabulary& vocabulary)
{
    std::vector<std::string> remarks;
    for (const UndeclaredCondition& condition : undeclaredConditions(conditions, vocabulary)) {
        remarks.push_back("nobody declares the condition " + quoted(condition.name) +
                          (condition.nearest.empty() ? "" : ": did you mean " + condition.nearest + '?'));
    }
    return remarks;
}

} // namespace ostrel::inspection
