#include "hosting/RunSummary.h"

#include <inspection/Text.h>

namespace ostrel::host {

namespace {

using cppmicroservices::Bundle;
using inspection::Outcome;
using inspection::PlannedBundle;

/// The reason of a plan without its verb, which speaks of what will be.
std::string whyOf(const PlannedBundle& bundle)
{
    return bundle.text.substr(bundle.text.find(": ") + 2);
}

/// The problem without the bundle that it is about.
std::string reasonIn(const Problem::Text& failure)
{
    const std::string verb = "did not start: ";
    const std::size_t at = failure.what.find(verb);
    const std::string what = at == std::string::npos ? failure.what : failure.what.substr(at + verb.size());
    return what + ": " + failure.why.front();
}

struct Fate {
    std::string verb;
    std::string why;
};

Fate fateOf(const PlannedBundle& planned, const Bundle& bundle, const std::map<std::string, Problem::Text>& leftOut)
{
    switch (planned.outcome) {
    case Outcome::skip:
        return {"refused", whyOf(planned)};
    case Outcome::fail:
        return {"failed", whyOf(planned)};
    case Outcome::notReached:
        return {"not reached", whyOf(planned)};
    case Outcome::start:
        break;
    }
    if (bundle && bundle.GetState() == Bundle::STATE_ACTIVE) {
        return {"started", whyOf(planned)};
    }
    const auto failure = bundle ? leftOut.find(bundle.GetLocation()) : leftOut.end();
    return failure != leftOut.end() ? Fate{"failed", reasonIn(failure->second)}
                                    : Fate{"not running", "it was started, and stopped by itself or by another one"};
}

std::string nameOf(const PlannedBundle& bundle)
{
    return bundle.componentName.value_or(bundle.symbolicName.value_or(bundle.file));
}

std::string servicesIn(std::size_t loaded, std::size_t looked)
{
    const std::size_t refused = looked > loaded ? looked - loaded : 0;
    return std::to_string(loaded) + (loaded == 1 ? " service" : " services") + " loaded" +
           (refused == 0 ? "" : ", " + std::to_string(refused) + " refused");
}

} // namespace

std::string runSummary(const inspection::Plan& plan, const InstalledBundles& bundles,
                       const std::map<std::string, Problem::Text>& leftOut, std::size_t loaded, std::size_t looked)
{
    std::multimap<std::string, std::string> lines;
    std::map<std::string, std::size_t> counts;
    for (const PlannedBundle& planned : plan.bundles) {
        const Fate fate = fateOf(planned, bundles.of(planned), leftOut);
        ++counts[fate.verb];
        const std::string name = nameOf(planned);
        lines.emplace(name, inspection::escaped(name + ": " + fate.verb + ": " + fate.why));
    }
    std::string text;
    for (const auto& entry : lines) {
        text += entry.second + '\n';
    }
    std::string totals = std::to_string(counts["started"]) + " started";
    for (const char* const verb : {"refused", "failed", "not reached", "not running"}) {
        totals += counts[verb] == 0 ? "" : ", " + std::to_string(counts[verb]) + ' ' + verb;
    }
    return text + totals + "; " + servicesIn(loaded, looked) + '\n';
}

} // namespace ostrel::host
