#include "contract/traces/RandomValue.h"
#include "contract/traces/Subjects.h"

#include <cppmicroservices/LDAPFilter.h>

#include <algorithm>
#include <cctype>
#include <memory>
#include <sstream>
#include <vector>

namespace contract {

using namespace cppmicroservices;

namespace {

std::string randomOperand(Choices& choices)
{
    static std::vector<std::string> const known{"",
                                                "*",
                                                "a",
                                                "A*",
                                                "*b",
                                                "H*d",
                                                "*o W*",
                                                "**",
                                                "5",
                                                "05",
                                                " 5",
                                                "5x",
                                                "5.0",
                                                "+5",
                                                "-3",
                                                "0x10",
                                                "1e2",
                                                "1.50",
                                                "0.1",
                                                "true",
                                                "TRUE",
                                                "false",
                                                "t",
                                                "f*",
                                                "tru",
                                                "hello",
                                                "hellow orld",
                                                "HELLO WORLD",
                                                "Hello World",
                                                "nan",
                                                "inf",
                                                "1e400",
                                                "65",
                                                "-1",
                                                "127",
                                                "255",
                                                "256",
                                                "65535",
                                                "65536",
                                                "2147483647",
                                                "2147483648",
                                                "-2147483649",
                                                "9223372036854775807",
                                                "9223372036854775808",
                                                "99999999999999999999",
                                                "a\\*",
                                                "\\(x\\)",
                                                "\\\\",
                                                "\\28",
                                                "(x)",
                                                "b ",
                                                "=b",
                                                "~",
                                                "\xc3\xa9",
                                                "li*",
                                                "literal",
                                                "1/2",
                                                "7",
                                                "light"};
    return choices.chance(75) ? choices.of(known) : choices.text("abAB*019.- \\(", 5);
}

std::string randomComparison(Choices& choices)
{
    static std::vector<std::string> const attributes{"a",   "b", "c", "A",    "key", "Key", "KEY", "a.b",
                                                     "x y", "d", "e", "deep", "0",   "a!",  "none"};
    static std::vector<std::string> const operators{"=", "=", "=", "~=", ">=", "<="};
    auto result = "(" + choices.of(attributes);
    result += choices.of(operators);
    return result + randomOperand(choices) + ")";
}

std::string randomFilter(Choices& choices, int depth)
{
    if (depth == 0 || choices.chance(50)) {
        return randomComparison(choices);
    }
    static std::vector<std::string> const groups{"&", "|", "!"};
    auto const& group = choices.of(groups);
    auto result = "(" + group;
    for (auto left = group == "!" ? 1 : 1 + choices.below(3); left > 0; --left) {
        if (choices.chance(10)) {
            result += ' ';
        }
        result += randomFilter(choices, depth - 1);
    }
    return result + ")";
}

/// Takes out, puts in or changes some characters.
void damage(Choices& choices, std::string& text)
{
    static std::string const signs = "()=&|!~<>*\\ ab\t.";
    for (auto left = 1 + choices.below(2); left > 0; --left) {
        auto const at = choices.below(text.size() + 1);
        auto const sign = signs[choices.below(signs.size())];
        auto const kind = choices.below(3);
        if (kind == 0) {
            text.insert(at, 1, sign);
        } else if (at < text.size()) {
            kind == 1 ? text.erase(at, 1) : text.replace(at, 1, 1, sign);
        }
    }
}

/// Which spelling an exception names depends on the order of a hash map.
std::string caught(std::exception const& e)
{
    std::string text = e.what();
    if (text.find("case variants") != std::string::npos) {
        std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
    }
    return text;
}

template <class Match>
std::string matched(Match&& match)
{
    try {
        return match() ? "1" : "0";
    } catch (std::exception const& e) {
        return nameOf(typeid(e)) + ": " + caught(e);
    }
}

} // namespace

void traceFilters(Choices& choices, Trace& trace, std::size_t steps)
{
    std::vector<LDAPFilter> all{LDAPFilter()};
    for (; steps > 0; --steps) {
        auto text = randomFilter(choices, 3);
        if (choices.chance(35)) {
            damage(choices, text);
        }
        std::unique_ptr<LDAPFilter> made;
        trace.call("'" + text + "'", [&] {
            made = std::make_unique<LDAPFilter>(text);
            return made->ToString();
        });
        if (!made) {
            continue;
        }
        LDAPFilter& filter = *made;
        std::ostringstream written;
        written << filter;
        trace.line(std::string(filter ? "true " : "false ") + std::to_string(filter == LDAPFilter(text)) +
                   std::to_string(written.str() == filter.ToString()));
        trace.call("again", [&] { return std::to_string(LDAPFilter(filter.ToString()) == filter); });
        for (int maps = 0; maps < 3; ++maps) {
            auto const map = randomMap(choices, 5, 2);
            auto const ignoring = matched([&] { return filter.Match(map); });
            auto const exact = matched([&] { return filter.MatchCase(map); });
            trace.line(ignoring + " " + exact + " " + described(map));
        }
        auto const& other = choices.of(all);
        trace.line("as another: " + std::to_string(filter == other));
        if (choices.chance(20)) {
            filter = other;
            trace.line("assigned: " + filter.ToString());
        }
        all.push_back(filter);
    }
}

} // namespace contract
