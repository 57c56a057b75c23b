#include "inspection/Condition.h"

#include <algorithm>

namespace ostrel::inspection {

Conditions toConditions(const us_container::FilterMap& filterMap)
{
    Conditions conditions;
    conditions.reserve(filterMap.size());
    for (const auto& [name, condition] : filterMap) {
        conditions.push_back({name, condition.first, condition.second});
    }
    std::sort(conditions.begin(), conditions.end(),
              [](const Condition& a, const Condition& b) { return a.name < b.name; });
    return conditions;
}

us_container::FilterMap toFilterMap(const Conditions& conditions)
{
    us_container::FilterMap filterMap;
    for (const Condition& condition : conditions) {
        filterMap[condition.name] = {condition.value, condition.required};
    }
    return filterMap;
}

std::vector<std::string> toArguments(const Conditions& conditions)
{
    std::vector<std::string> arguments;
    for (const Condition& condition : conditions) {
        arguments.emplace_back(condition.required ? "--require" : "--when");
        arguments.push_back(condition.name + '=' + condition.value);
    }
    return arguments;
}

} // namespace ostrel::inspection
