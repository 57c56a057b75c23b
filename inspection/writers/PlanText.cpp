#include "inspection/Plan.h"
#include "inspection/Text.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace ostrel::inspection {
namespace {

std::string inWords(const std::string& reason)
{
    if (reason == toText(Reason::requiredNotNamed)) {
        return inWords(Reason::requiredNotNamed);
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

void addFindings(std::string& text, const Plan& plan, const PlannedBundle& bundle)
{
    for (const Finding& finding : plan.findings) {
        if (finding.file == bundle.file && toText(finding.code) == bundle.reason) {
            text += escaped("  do: " + finding.remedy + " [" + bundle.reason + ']') + '\n';
            return;
        }
    }
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
    std::string text = inOneLine(plan) + '\n';
    for (const PlannedBundle& bundle : plan.bundles) {
        const std::string name = bundle.componentName.value_or(bundle.symbolicName.value_or(""));
        text += escaped(bundle.file + ": " + (name.empty() ? "" : name + ' ') + bundle.text) + '\n';
        if (bundle.outcome == Outcome::fail) {
            addFindings(text, plan, bundle);
        }
    }
    for (const PassedOver& file : plan.passedOver) {
        text += escaped(file.file + ": is passed over: " + file.why) + '\n';
    }
    return text;
}

} // namespace ostrel::inspection
