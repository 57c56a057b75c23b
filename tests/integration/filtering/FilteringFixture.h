#pragma once

#include "container/MicroServicesContainer.h"
#include "support/RecordCapture.h"

#include <cppmicroservices/Any.h>
#include <cppmicroservices/AnyMap.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <ostream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace ostrel::test {

using cppmicroservices::Any;
using cppmicroservices::AnyMap;
using ostrel::us_container::FilterMap;

/// The value of a condition: what the host expects, and whether the attribute must be named.
inline std::pair<std::string, bool> required(const std::string& text)
{
    return {text, true};
}
inline std::pair<std::string, bool> optional(const std::string& text)
{
    return {text, false};
}

/// One alternative, walked in the order of its attributes' bytes.
inline Any alternative(const std::map<std::string, Any>& attributes)
{
    AnyMap map{AnyMap::ORDERED_MAP};
    for (const auto& [attribute, value] : attributes) {
        map[attribute] = value;
    }
    return Any{map};
}

/// One alternative as manifests hold it: the map finds keys in any case.
inline Any manifestAlternative(const std::string& attribute, const std::string& value)
{
    AnyMap map{AnyMap::UNORDERED_MAP_CASEINSENSITIVE_KEYS};
    map[attribute] = value;
    return Any{map};
}

inline Any text(const std::string& value)
{
    return Any{value};
}

/// A declaration: a list of alternatives, or of what is none.
template <typename... Elements>
Any listOf(const Elements&... elements)
{
    std::vector<Any> list;
    (list.emplace_back(elements), ...);
    return Any{list};
}

/// A value that counts how often its text or JSON is asked for.
struct Counted {
    int* rendered;

    friend std::ostream& operator<<(std::ostream& stream, const Counted& value)
    {
        ++*value.rendered;
        return stream << "counted";
    }
};

/// A value without a text.
struct Unrenderable {
    friend std::ostream& operator<<(std::ostream&, const Unrenderable&)
    {
        throw std::runtime_error{"planned fault: no text"};
    }
};

/// A value whose rendering throws something that is no exception.
struct UnrenderableByInt {
    friend std::ostream& operator<<(std::ostream&, const UnrenderableByInt&) { throw 42; }
};

/// Checks declarations of a subject called "subject".
class CheckFilter : public ::testing::Test {
protected:
    using Records = std::vector<LogRecord>;

    static bool check(const Any& filters, const FilterMap& filterMap)
    {
        return ostrel::us_container::checkFilter(filters, filterMap, "subject");
    }

    static LogRecord filters(const Any& declaration) { return {0x8, "subject: filters: " + declaration.ToJSON()}; }
    static LogRecord unexpected(const Any& declaration)
    {
        return {0x100, "subject: unexpected type for filters: " + declaration.ToJSON()};
    }

    const LogRecord skipping{0x100, "subject: invalid filter, skipping it."};
    const LogRecord matches{0x8, "subject: filter does match"};
    const LogRecord matchesNot{0x8, "subject: filter does not match"};
    const LogRecord emptyMatches{0x8, "subject: empty filter does match"};
    const LogRecord emptyLacks{0x8, "subject: empty filter is missing required attribute"};
    const LogRecord error{0x100, "subject: error checking ostrelFilters from bundle"};

    RecordCapture log;
};

} // namespace ostrel::test
