#include "contract/traces/RandomValue.h"

#include "contract/traces/Trace.h"

#include <algorithm>
#include <limits>
#include <list>
#include <map>
#include <set>
#include <sstream>
#include <vector>

namespace contract {

using namespace cppmicroservices;

namespace {

std::string randomText(Choices& choices)
{
    static std::vector<std::string> const known{
        "",   " ",  "a",    "A",    "b",  "Hello World", "hello", "*",    "(x)",      "\\", "true", "False", "5", "05",
        "-3", "10", "9.50", "a\"b", "\t", "line\nline",  "\x01",  "\x7f", "\xc3\xa9", "/",  "'",    "a,b",   "]", "{}",
    };
    return choices.chance(70) ? choices.of(known) : choices.text("abAB *019.-\"\\", 6);
}

long long randomInteger(Choices& choices)
{
    static std::vector<long long> const known{0,
                                              1,
                                              -1,
                                              2,
                                              5,
                                              10,
                                              65,
                                              97,
                                              127,
                                              128,
                                              -128,
                                              255,
                                              256,
                                              32767,
                                              65535,
                                              65536,
                                              2147483647LL,
                                              -2147483648LL,
                                              4294967295LL,
                                              4294967296LL,
                                              std::numeric_limits<long long>::max(),
                                              std::numeric_limits<long long>::min()};
    return choices.of(known);
}

double randomReal(Choices& choices)
{
    static std::vector<double> const known{
        0.0,         -0.0,    1.0,       0.1, 1.5,        -2.25, 1e20,   1e-7,
        123456789.0, 1000000, 1e6 + 0.5, 5.0, 3.14159265, 1e300, 1e-310, 0.30000000000000004};
    if (choices.chance(4)) {
        return std::numeric_limits<double>::infinity();
    }
    return choices.of(known);
}

std::vector<Any> randomList(Choices& choices, int depth)
{
    std::vector<Any> result;
    for (auto left = choices.below(4); left > 0; --left) {
        result.push_back(randomValue(choices, depth));
    }
    return result;
}

Any randomScalar(Choices& choices)
{
    auto const integer = randomInteger(choices);
    switch (choices.below(20)) {
    case 0:
        return static_cast<short>(integer);
    case 1:
        return static_cast<unsigned short>(integer);
    case 2:
        return static_cast<unsigned int>(integer);
    case 3:
        return static_cast<unsigned long>(integer);
    case 4:
        return static_cast<long long>(integer);
    case 5:
        return static_cast<unsigned long long>(integer);
    case 6:
        return static_cast<signed char>(integer);
    case 7:
        return static_cast<unsigned char>(integer);
    case 8:
        return static_cast<char>(integer);
    case 9:
        return static_cast<long>(integer);
    case 10:
        return choices.chance(50);
    case 11:
        return randomReal(choices);
    case 12: {
        auto const real = randomReal(choices);
        return real > 1e38 ? 1e38F : static_cast<float>(real);
    }
    case 13:
        return choices.chance(50) ? "literal" : "li\"t";
    case 14:
        return choices.chance(50) ? light : dark;
    case 15:
        return Point{1, static_cast<int>(choices.below(3))};
    case 16:
        return Any();
    case 17:
        return randomText(choices);
    case 18:
        return randomText(choices);
    default:
        return static_cast<int>(integer);
    }
}

} // namespace

std::ostream& operator<<(std::ostream& os, Point const& point)
{
    return os << point.x << '/' << point.y;
}

Any randomValue(Choices& choices, int depth)
{
    if (depth == 0 || choices.chance(60)) {
        return randomScalar(choices);
    }
    switch (choices.below(13)) {
    case 0:
        return std::vector<std::string>{randomText(choices), randomText(choices)};
    case 1:
        return std::vector<int>{3, choices.between(1, 9)};
    case 2:
        return std::vector<long>(choices.below(3), 5);
    case 3:
        return std::list<std::string>{randomText(choices)};
    case 4:
        return std::set<std::string>{randomText(choices), randomText(choices)};
    case 5:
        return std::list<double>{randomReal(choices)};
    case 6:
        return randomList(choices, depth - 1);
    case 7: {
        auto const list = randomList(choices, depth - 1);
        return std::list<Any>(list.begin(), list.end());
    }
    case 8: {
        std::map<std::string, Any> map;
        for (auto left = choices.below(3); left > 0; --left) {
            map[randomKey(choices)] = randomValue(choices, depth - 1);
        }
        return map;
    }
    case 9:
        return std::map<int, std::string>{{choices.between(0, 9), randomText(choices)}, {12, "x"}};
    case 10:
        return std::map<int, Any>{{choices.between(0, 9), randomValue(choices, depth - 1)}};
    case 11:
        return std::vector<bool>{choices.chance(50), true};
    default:
        return randomMap(choices, 3, depth - 1);
    }
}

std::string randomKey(Choices& choices)
{
    static std::vector<std::string> const keys{"a", "b", "c",    "A",    "key", "Key", "a.b",      "x y",
                                               "d", "",  "a\"b", "deep", "0",   "e",   "\xc3\x84", "KEY"};
    return choices.of(keys);
}

AnyMap randomMap(Choices& choices, std::size_t size, int depth)
{
    AnyMap result(static_cast<AnyMap::map_type>(choices.below(3)));
    for (auto left = choices.below(size + 1); left > 0; --left) {
        auto const key = randomKey(choices);
        result[key] = randomValue(choices, depth);
    }
    return result;
}

namespace {

template <class Map>
std::string entries(Map const& map)
{
    std::vector<std::string> texts;
    for (auto const& [key, value] : map) {
        std::ostringstream text;
        text << key << '=' << described(value);
        texts.push_back(text.str());
    }
    std::sort(texts.begin(), texts.end());
    std::string result = "{";
    for (auto const& text : texts) {
        result += text + ";";
    }
    return result + "}";
}

template <class List>
std::string items(List const& list)
{
    std::string result = "[";
    for (auto const& item : list) {
        result += described(item) + ",";
    }
    return result + "]";
}

template <class List>
bool anyEmpty(List const& list)
{
    return std::any_of(list.begin(), list.end(), [](Any const& item) { return holdsEmpty(item); });
}

template <class Map>
bool anyValueEmpty(Map const& map)
{
    for (auto const& entry : map) {
        if (holdsEmpty(entry.second)) {
            return true;
        }
    }
    return false;
}

std::string briefName(std::type_info const& type)
{
    auto name = nameOf(type);
    for (std::string const& part :
         {std::string("std::__cxx11::basic_string<char, std::char_traits<char>, std::allocator<char> >")}) {
        for (auto at = name.find(part); at != std::string::npos; at = name.find(part, at)) {
            name.replace(at, part.size(), "string");
        }
    }
    return name.size() > 60 ? name.substr(0, 60) : name;
}

} // namespace

std::string described(Any const& value)
{
    if (value.Empty()) {
        return "empty";
    }
    if (auto const* const map = any_cast<AnyMap>(&value)) {
        return "map" + std::to_string(map->GetType()) + entries(*map);
    }
    if (auto const* const list = any_cast<std::vector<Any>>(&value)) {
        return "vector" + items(*list);
    }
    if (auto const* const list = any_cast<std::list<Any>>(&value)) {
        return "list" + items(*list);
    }
    if (auto const* const map = any_cast<std::map<std::string, Any>>(&value)) {
        return "std::map" + entries(*map);
    }
    if (auto const* const map = any_cast<std::map<int, Any>>(&value)) {
        return "std::map<int>" + entries(*map);
    }
    return briefName(value.Type()) + ":" + value.ToString();
}

bool holdsEmpty(AnyMap const& map)
{
    return anyValueEmpty(map);
}

bool holdsEmpty(Any const& value)
{
    if (value.Empty()) {
        return true;
    }
    if (auto const* const map = any_cast<AnyMap>(&value)) {
        return anyValueEmpty(*map);
    }
    if (auto const* const list = any_cast<std::vector<Any>>(&value)) {
        return anyEmpty(*list);
    }
    if (auto const* const list = any_cast<std::list<Any>>(&value)) {
        return anyEmpty(*list);
    }
    if (auto const* const map = any_cast<std::map<std::string, Any>>(&value)) {
        return anyValueEmpty(*map);
    }
    if (auto const* const map = any_cast<std::map<int, Any>>(&value)) {
        return anyValueEmpty(*map);
    }
    return false;
}

} // namespace contract
