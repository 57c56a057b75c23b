#include "inspection/Plan.h"

#include <map>
#include <utility>

namespace ostrel::inspection {
namespace {

/// The file's name in its directory, and the number of the bundle in it.
using Place = std::pair<std::string, std::size_t>;

std::map<Place, const PlannedBundle*> byPlace(const Plan& plan)
{
    std::map<Place, const PlannedBundle*> places;
    for (const PlannedBundle& bundle : plan.bundles) {
        Place place{bundle.file.substr(bundle.file.rfind('/') + 1), 0};
        while (!places.emplace(place, &bundle).second) {
            ++place.second;
        }
    }
    return places;
}

std::string shown(const std::optional<std::string>& text)
{
    return text ? '"' + *text + '"' : "none";
}

void compare(std::string& changes, const std::string& what, const std::optional<std::string>& then,
             const std::optional<std::string>& now)
{
    if (then != now) {
        changes += "; its " + what + " was " + shown(then) + " and is " + shown(now);
    }
}

std::string fateOf(const PlannedBundle& bundle)
{
    switch (bundle.outcome) {
    case Outcome::start:
        return "to be started (" + bundle.reason + ')';
    case Outcome::skip:
        return "to be refused (" + bundle.reason + ')';
    case Outcome::fail:
        return "to fail (" + bundle.reason + ')';
    case Outcome::notReached:
        break;
    }
    return "not to be reached";
}

/// What is said of a bundle in both plans; "" when it is the same.
std::string changesOf(const PlannedBundle& then, const PlannedBundle& now)
{
    std::string changes;
    if (then.sha256 != now.sha256) {
        changes += "; its content is another one";
    }
    compare(changes, "symbolic name", then.symbolicName, now.symbolicName);
    compare(changes, "version", then.version, now.version);
    compare(changes, "component name", then.componentName, now.componentName);
    if (const std::string was = fateOf(then), is = fateOf(now); was != is) {
        changes += "; it was " + was + ", and is now " + is;
    }
    return changes.empty() ? changes : changes.substr(2);
}

} // namespace

std::vector<std::string> differences(const Plan& then, const Plan& now)
{
    std::vector<std::string> result;
    const auto before = byPlace(then);
    const auto after = byPlace(now);
    for (const auto& [place, bundle] : before) {
        const auto is = after.find(place);
        if (is == after.end()) {
            result.push_back('"' + bundle->file + "\": a bundle of it is gone: " + shown(bundle->symbolicName));
        } else if (const std::string changes = changesOf(*bundle, *is->second); !changes.empty()) {
            result.push_back('"' + is->second->file + "\": " + changes);
        }
    }
    for (const auto& [place, bundle] : after) {
        if (before.count(place) == 0) {
            result.push_back('"' + bundle->file + "\": a bundle of it is new: " + shown(bundle->symbolicName));
        }
    }
    return result;
}

} // namespace ostrel::inspection
