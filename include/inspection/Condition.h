#pragma once

#include "inspection/Export.h"

#include <container/MicroServicesContainer.h>
#include <string>
#include <vector>

namespace ostrel::inspection {

/// A condition of the host; an entry of its us_container::FilterMap.
struct Condition {
    std::string name;
    std::string value;
    bool required = false;

    friend bool operator==(const Condition& a, const Condition& b)
    {
        return a.name == b.name && a.value == b.value && a.required == b.required;
    }
    friend bool operator!=(const Condition& a, const Condition& b) { return !(a == b); }
};

/// By name, in byte order.
using Conditions = std::vector<Condition>;

OSTREL_INSPECTION_EXPORT Conditions toConditions(const us_container::FilterMap& filterMap);

/// Of two conditions of one name, the last one counts.
OSTREL_INSPECTION_EXPORT us_container::FilterMap toFilterMap(const Conditions& conditions);

/// The options of `ostrel-host` that give these conditions: "--when", "name=value", or "--require", "name=value".
OSTREL_INSPECTION_EXPORT std::vector<std::string> toArguments(const Conditions& conditions);

} // namespace ostrel::inspection
