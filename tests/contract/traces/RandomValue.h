#pragma once

#include "contract/traces/Choices.h"

#include <cppmicroservices/AnyMap.h>

#include <ostream>
#include <string>

namespace contract {

enum Shade { light, dark = 7 };

/// A type of a user: written by its own operator, and without ==.
struct Point {
    int x;
    int y;
};
std::ostream& operator<<(std::ostream& os, Point const& point);

/// A value of any of some thirty types, empty ones among them; lists and maps hold values down to `depth` levels.
cppmicroservices::Any randomValue(Choices& choices, int depth = 2);

/// A map of one of the three kinds with up to `size` of the keys of randomKey().
cppmicroservices::AnyMap randomMap(Choices& choices, std::size_t size, int depth = 1);

/// One of few, so that they meet; some are alike but for their case.
std::string randomKey(Choices& choices);

/// The value and its type, also of what is inside; the entries of maps in order of their keys.
std::string described(cppmicroservices::Any const& value);

/// True when it is empty, or holds an empty one: comparing those is undefined.
bool holdsEmpty(cppmicroservices::Any const& value);
bool holdsEmpty(cppmicroservices::AnyMap const& map);

} // namespace contract
