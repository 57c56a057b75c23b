#include "inspection/start/Sentence.h"

#include <algorithm>
#include <map>

namespace ostrel::inspection {
namespace {

using us_container::FilterMap;

std::string quoted(const std::string& text)
{
    return '"' + text + '"';
}

std::string listed(const std::vector<std::string>& names)
{
    std::string text;
    for (const std::string& name : names) {
        text += (text.empty() ? "" : ", ") + quoted(name);
    }
    return text;
}

std::string requiredIn(const FilterMap& filterMap)
{
    std::vector<std::string> names;
    for (const auto& [name, condition] : filterMap) {
        if (condition.second) {
            names.push_back(name);
        }
    }
    std::sort(names.begin(), names.end());
    return (names.size() == 1 ? "this is required: " : "one of these is required: ") + listed(names);
}

/// What is said of one alternative that was looked at and does not match.
std::string fault(const Alternative& alternative)
{
    if (!alternative.differs.empty()) {
        const Difference& difference = alternative.differs.front();
        return "declares " + difference.attribute + ' ' + quoted(difference.declared) + ", but the condition is " +
               quoted(difference.condition);
    }
    if (alternative.verdict == Verdict::requiredNotNamed) {
        return "names none of the required conditions: " + listed(alternative.missing);
    }
    return "is no map";
}

std::string faults(const std::vector<Alternative>& alternatives)
{
    if (alternatives.size() == 1) {
        return "its only alternative " + fault(alternatives.front());
    }
    std::string text = "none of its " + std::to_string(alternatives.size()) + " alternatives matches";
    std::size_t number = 0;
    for (const Alternative& alternative : alternatives) {
        text += (number == 0 ? ": " : "; ") + std::to_string(number + 1) + ' ' + fault(alternative);
        ++number;
    }
    return text;
}

std::string matching(const std::vector<Alternative>& alternatives)
{
    const auto match = std::find_if(alternatives.begin(), alternatives.end(),
                                    [](const Alternative& one) { return one.verdict == Verdict::matches; });
    return "alternative " + std::to_string(match - alternatives.begin() + 1) + " of " +
           std::to_string(alternatives.size()) + " matches";
}

std::string whyOf(const Subject& subject, const FilterMap& filterMap)
{
    switch (subject.reason) {
    case Reason::alternativeMatches:
        return matching(subject.alternatives);
    case Reason::noDeclaration:
        return "it declares no filters, and no condition is required";
    case Reason::noDeclarationButRequired:
        return "it declares no filters, but " + requiredIn(filterMap);
    case Reason::notAList:
        return "its filters are no list and count as none, and no condition is required";
    case Reason::notAListButRequired:
        return "its filters are no list and count as none, but " + requiredIn(filterMap);
    case Reason::emptyList:
        return "its list of filters is empty, which admits nothing";
    case Reason::noMap:
    case Reason::valueDiffers:
    case Reason::requiredNotNamed:
        return faults(subject.alternatives);
    case Reason::unreadable:
        return "a value of its filters cannot be written as text, which admits it";
    case Reason::noZqMap:
        return "it has no property \"zq\" that is a map, so nothing is asked";
    case Reason::noComponentName:
        break;
    }
    return R"(its manifest has no "zq": {"component": {"name": ...}})";
}

/// So that a shell takes the text as one word, without changing it.
std::string forShell(const std::string& text)
{
    const bool isPlain = !text.empty() && std::all_of(text.begin(), text.end(), [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
               std::string_view{"_-+=.,:/@%"}.find(c) != std::string_view::npos;
    });
    if (isPlain) {
        return text;
    }
    std::string result = "'";
    for (const char c : text) {
        result += c == '\'' ? "'\\''" : std::string(1, c);
    }
    return result + '\'';
}

} // namespace

std::string sentenceOf(const Subject& subject, const FilterMap& filterMap)
{
    const bool isBundle = subject.kind == SubjectKind::bundle;
    const std::string verb = !subject.admitted    ? "ends the start: "
                             : !*subject.admitted ? "is refused: "
                             : isBundle           ? "starts: "
                                                  : "is loaded: ";
    return verb + whyOf(subject, filterMap);
}

std::string asCommandLine(const Conditions& conditions)
{
    std::string line;
    for (const std::string& word : toArguments(conditions)) {
        line += (line.empty() ? "" : " ") + forShell(word);
    }
    return line;
}

std::string changeInWords(const Conditions& before, const Conditions& after)
{
    std::map<std::string, std::pair<Conditions, Conditions>> byName;
    for (const Condition& condition : before) {
        byName[condition.name].first = {condition};
    }
    for (const Condition& condition : after) {
        byName[condition.name].second = {condition};
    }
    std::string text;
    for (const auto& [name, pair] : byName) {
        const auto& [was, is] = pair;
        if (was == is) {
            continue;
        }
        text += text.empty() ? "" : "; ";
        text += was.empty()  ? "add " + asCommandLine(is)
                : is.empty() ? "drop " + asCommandLine(was)
                             : "change " + asCommandLine(was) + " to " + asCommandLine(is);
    }
    return text;
}

std::string counted(std::size_t count, const std::string& what)
{
    return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

} // namespace ostrel::inspection
