#include "inspection/Remarks.h"

#include "inspection/start/Sentence.h"

#include <map>

namespace ostrel::inspection {
namespace {

/// So many names are listed; the others are counted.
constexpr std::size_t listedNames = 10;

std::string quoted(const std::string& text)
{
    return '"' + text + '"';
}

std::string noBundle(const std::string& directory, bool hasFolders)
{
    return quoted(directory) + " holds no bundle" + (hasFolders ? "; the directories in it are not entered" : "");
}

void remarkOnEmptiness(std::vector<std::string>& remarks, const Plan& plan, const std::string& directory)
{
    if (plan.bundles.empty()) {
        remarks.push_back(noBundle(directory, plan.hasFolders));
    } else if (summaryOf(plan).skip == plan.bundles.size()) {
        remarks.push_back("the conditions admit none of " + counted(plan.bundles.size(), "bundle") +
                          "; 'ostrel-host explain' says why, and what would");
    }
}

void remarkOnPassedOver(std::vector<std::string>& remarks, const std::vector<PassedOver>& files)
{
    if (files.empty()) {
        return;
    }
    std::string line = counted(files.size(), "file") + " passed over: ";
    for (std::size_t i = 0; i < files.size() && i < listedNames; ++i) {
        const PassedOver& file = files[i];
        line += (i == 0 ? "" : "; ") + quoted(file.file) + ": " + file.why;
    }
    if (files.size() > listedNames) {
        line += "; and " + std::to_string(files.size() - listedNames) + " more";
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
    remarkOnPassedOver(remarks, plan.passedOver);
    remarkOnTwins(remarks, plan);
    return remarks;
}

std::vector<std::string> remarksOn(const Explanation& explanation, const std::string& directory)
{
    std::vector<std::string> remarks;
    if (explanation.subjects.empty() && explanation.findings.empty()) {
        remarks.push_back(noBundle(directory, explanation.hasFolders));
    }
    remarkOnPassedOver(remarks, explanation.passedOver);
    return remarks;
}

std::vector<std::string> remarksOnConditions(const Conditions& conditions, const Vocabulary& vocabulary, Asked asked)
{
    const std::string who = asked == Asked::bundles ? "no bundle" : "neither a bundle nor a service";
    std::vector<std::string> remarks;
    for (const UndeclaredCondition& condition : undeclaredConditions(conditions, vocabulary)) {
        remarks.push_back(who + " declares the condition " + quoted(condition.name) +
                          (condition.nearest.empty() ? "" : ": did you mean " + condition.nearest + '?'));
    }
    return remarks;
}

} // namespace ostrel::inspection
