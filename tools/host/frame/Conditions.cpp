#include "frame/Conditions.h"

#include "frame/Problem.h"

#include <utility>

namespace ostrel::host {

namespace {

using ostrel::us_container::FilterMap;

void add(FilterMap& conditions, const std::string& option, const std::string& text, bool required)
{
    const std::string given = option + " " + quoted(text);
    const auto fail = [](const std::string& what, const std::string& why, const std::string& remedy) {
        throw Problem{ExitStatus::usage, {what, "", {why}, remedy}};
    };
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos) {
        fail("the condition " + given + " cannot be understood", "there is no '=' in it",
             "write it as " + option + " NAME=VALUE");
    }
    std::string name = text.substr(0, equals);
    if (name.empty()) {
        fail("the condition " + given + " cannot be understood", "there is no name before the '='",
             "write it as " + option + " NAME=VALUE");
    }
    if (conditions.count(name) != 0) {
        fail("the condition " + given + " contradicts another", "a condition on " + quoted(name) + " was given before",
             "give each NAME once, with either --when or --require");
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
