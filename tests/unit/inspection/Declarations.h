#pragma once

#include <cppmicroservices/Any.h>
#include <cppmicroservices/AnyMap.h>

#include <ostream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace ostrel::test {

/// A value whose text cannot be rendered.
struct Unreadable {};

inline bool operator==(const Unreadable&, const Unreadable&)
{
    return true;
}

inline std::ostream& operator<<(std::ostream&, const Unreadable&)
{
    throw std::runtime_error{"unreadable"};
}

/// An alternative whose attributes lie in byte order.
inline cppmicroservices::Any map(const std::vector<std::pair<std::string, cppmicroservices::Any>>& attributes)
{
    cppmicroservices::AnyMap made{cppmicroservices::AnyMap::ORDERED_MAP};
    for (const auto& [name, value] : attributes) {
        made[name] = value;
    }
    return made;
}

inline cppmicroservices::Any list(std::vector<cppmicroservices::Any> alternatives)
{
    return alternatives;
}

} // namespace ostrel::test
