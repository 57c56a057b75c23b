// The first line as a filter, each other one as a property `TYPE KEY=VALUE` to match: no filter does worse than
// std::invalid_argument, and what it says of itself in text and of combinations with itself fits together.
#include "fuzz/FuzzTarget.h"

#include <cppmicroservices/AnyMap.h>
#include <cppmicroservices/LDAPFilter.h>

#include <cstdlib>
#include <list>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

using namespace cppmicroservices;
using ostrel::fuzz::require;

namespace {

/// Takes the first line off.
std::string takeLine(std::string_view& text)
{
    const auto end = text.find('\n');
    const std::string line{text.substr(0, end)};
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return line;
}

std::vector<std::string> commaSeparated(const std::string& text)
{
    std::vector<std::string> items(1);
    for (const char c : text) {
        if (c == ',') {
            items.emplace_back();
        } else {
            items.back() += c;
        }
    }
    return items;
}

Any valueOf(char type, const std::string& text)
{
    const auto items = commaSeparated(text);
    switch (type) {
    case 'i':
        return std::atoi(text.c_str());
    case 'l':
        return std::atol(text.c_str());
    case 'u':
        return static_cast<unsigned char>(std::atoi(text.c_str()));
    case 'd':
        return std::atof(text.c_str());
    case 'f':
        return static_cast<float>(std::atof(text.c_str()));
    case 'b':
        return text == "true";
    case 'c':
        return text.empty() ? '\0' : text.front();
    case 'v':
        return items;
    case 't':
        return std::list<std::string>(items.begin(), items.end());
    case 'a':
        return std::vector<Any>{Any(), items.front(), items.back(), std::vector<Any>(items.begin(), items.end())};
    case 'e':
        return {};
    default:
        return text;
    }
}

AnyMap readProperties(std::string_view text, AnyMap::map_type kind)
{
    AnyMap map(kind);
    while (!text.empty()) {
        const std::string line = takeLine(text);
        const auto sign = line.find('=');
        if (line.size() >= 2 && sign != std::string::npos && sign >= 2) {
            map.emplace(line.substr(2, sign - 2), valueOf(line[0], line.substr(sign + 1)));
        }
    }
    return map;
}

/// Nothing when the map is none that can be matched.
std::optional<bool> matches(const LDAPFilter& filter, const AnyMap& map)
{
    try {
        return filter.Match(map);
    } catch (const std::runtime_error& e) {
        require(std::string_view{e.what()}.rfind("Properties contain case variants of the key: ", 0) == 0,
                "only case variants keep a map from being matched");
        return std::nullopt;
    }
}

std::optional<LDAPFilter> read(const std::string& text)
{
    try {
        return LDAPFilter(text);
    } catch (const std::invalid_argument&) {
        return std::nullopt;
    }
}

void checkText(const LDAPFilter& filter)
{
    const auto again = read(filter.ToString());
    require(again && *again == filter && again->ToString() == filter.ToString(),
            "the normal form is a filter, and its own normal form");
}

void checkMatching(const LDAPFilter& filter, std::string_view properties)
{
    const AnyMap map = readProperties(properties, AnyMap::UNORDERED_MAP_CASEINSENSITIVE_KEYS);
    const bool result = *matches(filter, map);
    const std::string text = filter.ToString();
    require(*matches(LDAPFilter("(!" + text + ")"), map) != result, "(!x) is the opposite of x");
    require(*matches(LDAPFilter("(&" + text + text + ")"), map) == result, "(&xx) is x");
    require(*matches(LDAPFilter("(|" + text + text + ")"), map) == result, "(|xx) is x");
    require(!*matches(LDAPFilter("(&" + text + "(!" + text + "))"), map), "(&x(!x)) is false");
    require(*matches(LDAPFilter("(|(!" + text + ")" + text + ")"), map), "(|(!x)x) is true");

    for (const auto kind : {AnyMap::ORDERED_MAP, AnyMap::UNORDERED_MAP}) {
        const AnyMap other = readProperties(properties, kind);
        const auto otherResult = matches(filter, other);
        require(!otherResult || *otherResult == result, "the kind of the map does not matter");
        if (otherResult) {
            filter.MatchCase(other);
        }
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::string_view rest = ostrel::fuzz::textOf(data, size);
    if (const auto filter = read(takeLine(rest))) {
        checkText(*filter);
        checkMatching(*filter, rest);
    }
    return 0;
}
