#include "Conditions.h"

#include "Problem.h"

#include <utility>

namespace ostrel::host {

namespace {

using ostrel::us_container::FilterMap;

void add(FilterMap& conditions, const std::string& option, const std::string& text, bool required)
{
    const std::string where = "option " + option + " " + quoted(text);
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos) {
        throw Problem{
            ExitStatus::usage,
            {"cannot understand a condition", where, "there is no '=' in it", "write it as " + option + " NAME=VALUE"}};
    }
    std::string name = text.substr(0, equals);
    if (name.empty()) {
        throw Problem{ExitStatus::usage,
                      {"cannot understand a condition", where, "there is no name before the '='",
                       "write it as " + option + " NAME=VALUE"}};
    }
    if (conditions.count(name) != 0) {
        throw Problem{ExitStatus::usage,
                      {"cannot use contradicting conditions", where,
                       "a condition on " + quoted(name) + " was given before",
                       "give each NAME once, with either --when or --require"}};
    }
    conditions.emplace(std::move(name), std::pair{text.substr(equals + 1), required});
}

} // namespace

FilterMap parseConditions(const std::vector<std::string>& when, const std::vector<std::string>& require)
{
    FilterMap conditions;
    for (const std::string& text : when) {
        add(conditions, "--when", text, false);
    }
    for (const std::string& text : require) {
        add(conditions, "--require", text, true);
    }
    return conditions;
}

} // namespace ostrel::host
