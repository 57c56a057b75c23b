#include "filtering/Matcher.h"

#include <cppmicroservices/AnyMap.h>

#include <algorithm>
#include <typeinfo>

namespace ostrel::filtering {

using cppmicroservices::Any;
using cppmicroservices::AnyMap;

namespace {

/// Whether the alternative names the attribute byte for byte; manifests are maps that find keys in any case.
bool names(const AnyMap& alternative, const std::string& attribute)
{
    const auto entry = alternative.find(attribute);
    return entry != alternative.end() && entry->first == attribute;
}

// KEPT ON PURPOSE: naming any one of several required attributes is enough.
bool namesRequired(const AnyMap& alternative, const Conditions& conditions)
{
    bool required = false;
    for (const auto& [attribute, condition] : conditions) {
        if (condition.second) {
            if (names(alternative, attribute)) {
                return true;
            }
            required = true;
        }
    }
    return !required;
}

} // namespace

bool anyRequired(const Conditions& conditions)
{
    return std::any_of(conditions.begin(), conditions.end(), [](const auto& entry) { return entry.second.second; });
}

Judgement judge(const Any& alternative, const Conditions& conditions)
{
    if (alternative.Type() != typeid(AnyMap)) {
        return {Verdict::notAMap};
    }
    const auto map = cppmicroservices::any_cast<AnyMap>(alternative);
    for (const auto& [attribute, value] : map) {
        // The text is rendered even for attributes that the host does not name: one that cannot be rendered makes the
        // whole declaration one that cannot be evaluated.
        std::string text = value.ToString();
        const auto expected = conditions.find(attribute);
        if (expected != conditions.end() && text != expected->second.first) {
            return {Verdict::valueDiffers, attribute, std::move(text)};
        }
    }
    return {namesRequired(map, conditions) ? Verdict::matches : Verdict::requiredNotNamed};
}

} // namespace ostrel::filtering
