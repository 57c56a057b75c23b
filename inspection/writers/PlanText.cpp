#include "inspection/Plan.h"
#include "inspection/Text.h"

#include <algorithm>
#include <map>
#include <string_view>
#include <utility>
#include <vector>

namespace ostrel::inspection {
namespace {

/// "value differs" and so on.
std::string inWords(const std::string& reason)
{
    if (reason == toText(Reason::requiredNotNamed)) {
        return "required attribute not named";
    }
    std::string words = reason;
    std::replace(words.begin(), words.end(), '-', ' ');
    return words;
}

/// "4 value differs, 2 required attribute not named": of what has this outcome, the most frequent first. One reason for
/// all needs no number.
std::string reasonsOf(const Plan& plan, Outcome outcome)
{
    std::vector<std::pair<std::string, std::size_t>> counts;
    for (const PlannedBundle& bundle : plan.bundles) {
        if (bundle.outcome != outcome) {
            continue;
        }
        const auto known = std::find_if(counts.begin(), counts.end(),
                                        [&bundle](const auto& entry) { return entry.first == bundle.reason; });
        if (known == counts.end()) {
            counts.emplace_back(bundle.reason, 1);
        } else {
            ++known->second;
        }
    }
    std::stable_sort(counts.begin(), counts.end(),
                     [](const auto& left, const auto& right) { return left.second > right.second; });
    std::string text;
    for (const auto& [reason, count] : counts) {
        text += (text.empty() ? "" : ", ") + (counts.size() == 1 ? "" : std::to_string(count) + ' ') + inWords(reason);
    }
    return text;
}

/// What mends a failure, by file and code.
using Remedies = std::map<std::pair<std::string, std::string_view>, std::string>;

Remedies remediesIn(const Plan& plan)
{
    Remedies remedies;
    for (const Finding& finding : plan.findings) {
        remedies.emplace(std::pair{finding.file, toText(finding.code)}, finding.remedy);
    }
    return remedies;
}

} // namespace

std::string inOneLine(const Plan& plan)
{
    const PlanSummary summary = summaryOf(plan);
    std::string line = std::to_string(summary.start) + " of " + std::to_string(plan.bundles.size()) +
                       (summary.start == 1 ? " starts" : " start");
    if (summary.skip != 0) {
        line += "; " + std::to_string(summary.skip) + " refused: " + reasonsOf(plan, Outcome::skip);
    }
    if (summary.fail != 0) {
        line += "; " + std::to_string(summary.fail) + (summary.fail == 1 ? " fails: " : " fail: ") +
                reasonsOf(plan, Outcome::fail);
    }
    if (summary.notReached != 0) {
        line += "; " + std::to_string(summary.notReached) + " not reached";
    }
    return line;
}

std::string toText(const Plan& plan)
{
    const Remedies remedies = remediesIn(plan);
    std::string text = inOneLine(plan) + '\n';
    for (const PlannedBundle& bundle : plan.bundles) {
        const std::string name = bundle.componentName.value_or(bundle.symbolicName.value_or(""));
        text += escaped(bundle.file + ": " + (name.empty() ? "" : name + ' ') + bundle.text) + '\n';
        const auto remedy = remedies.find({bundle.file, bundle.reason});
        if (bundle.outcome == Outcome::fail && remedy != remedies.end()) {
            text += escaped("  do: " + remedy->second + " [" + bundle.reason + ']') + '\n';
        }
    }
    for (const PassedOver& file : plan.passedOver) {
        text += escaped(file.file + ": is passed over: " + file.why) + '\n';
    }
    return text;
}

} // namespace ostrel::inspection
