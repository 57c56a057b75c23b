#include "inspection/SmallestChange.h"

#include "filtering/Decision.h"
#include "inspection/Attempt.h"

#include <cppmicroservices/AnyMap.h>

#include <algorithm>
#include <limits>
#include <map>
#include <set>
#include <typeinfo>
#include <utility>
#include <vector>

namespace ostrel::inspection {

using cppmicroservices::Any;
using cppmicroservices::AnyMap;
using us_container::FilterMap;

namespace {

constexpr unsigned never = std::numeric_limits<unsigned>::max() / 2; // so that two can be added

/// A condition as it may become: a value and a flag, or none.
using State = std::optional<std::pair<std::string, bool>>;

/// A way to treat a name.
struct Option {
    State after;
    unsigned edits;
};

/// A way in which a declaration admits.
struct Target {
    std::map<std::string, std::string> declared; ///< where there is a condition of that name, it must have this text
    std::set<std::string> named;                 ///< one of these must be required, if anything is
    bool asksForRequired = true;                 ///< false: whatever is required, as a text that is reached then throws
};

/// The fewest edits of some names, in each of the ways in which they may serve a target.
struct Costs {
    unsigned any = 0;           ///< whatever is required
    unsigned none = 0;          ///< nothing is
    unsigned toRequire = never; ///< how many more, to have a name required that the target names
};

Costs operator+(const Costs& a, const Costs& b)
{
    return {std::min(a.any + b.any, never), std::min(a.none + b.none, never), std::min(a.toRequire, b.toRequire)};
}

unsigned fewestFor(const Target& target, const Costs& all)
{
    return target.asksForRequired ? std::min(all.none, std::min(all.any + all.toRequire, never)) : all.any;
}

bool canBeCarried(const std::string& name)
{
    return !name.empty() && name.find('=') == std::string::npos && name.find('\0') == std::string::npos;
}

class Search {
public:
    Search(const Any& filters, const FilterMap& filterMap) : m_filters{filters}, m_filterMap{filterMap} {}

    std::optional<Conditions> run();

private:
    void readDeclaration();
    void readAlternative(const AnyMap& alternative);
    void addNames();
    std::vector<Option> optionsOf(const std::string& name) const;
    bool admits(const FilterMap& filterMap) const;

    const Any& m_filters;
    const FilterMap& m_filterMap;
    std::vector<Target> m_targets;
    std::map<std::string, std::set<std::string>> m_values; // the texts declared for a name
    std::map<std::string, std::vector<Option>> m_options;  // the ways to treat a name, the preferred one first
};

void Search::readAlternative(const AnyMap& alternative)
{
    Target target;
    for (const auto& [attribute, value] : alternative) {
        target.named.insert(attribute);
        m_values[attribute]; // also without a text, as its condition may go
        const auto text = attempted([&value = value] { return value.ToString(); });
        if (text) {
            m_values[attribute].insert(*text);
        }
        if (!target.asksForRequired) {
            continue; // not reached
        }
        if (text) {
            target.declared.emplace(attribute, *text);
        } else {
            target.asksForRequired = false;
        }
    }
    m_targets.push_back(std::move(target));
}

void Search::readDeclaration()
{
    if (m_filters.Type() != typeid(std::vector<Any>)) {
        m_targets.emplace_back(); // names nothing, so nothing may be required
        return;
    }
    for (const Any& element : cppmicroservices::ref_any_cast<std::vector<Any>>(m_filters)) {
        if (element.Type() == typeid(AnyMap)) {
            readAlternative(cppmicroservices::any_cast<AnyMap>(element));
        }
    }
}

/// In the order of preference; "untouched" last.
std::vector<Option> Search::optionsOf(const std::string& name) const
{
    const auto found = m_filterMap.find(name);
    if (!canBeCarried(name)) {
        return {{found != m_filterMap.end() ? State{found->second} : State{}, 0}};
    }
    const auto declared = m_values.find(name);
    const std::set<std::string> values = declared != m_values.end() ? declared->second : std::set<std::string>{};
    std::vector<Option> options;
    const auto eachValue = [&](bool required, unsigned edits) {
        for (const std::string& value : values) {
            if (found == m_filterMap.end() || value != found->second.first) {
                options.push_back({{{value, required}}, edits});
            }
        }
    };
    if (found == m_filterMap.end()) {
        eachValue(false, 1); // add
        eachValue(true, 1);  // add required
        options.push_back({{}, 0});
        return options;
    }
    const auto& [value, required] = found->second;
    eachValue(required, 1); // change
    if (required) {
        options.push_back({{{value, false}}, 1}); // clear
        eachValue(false, 2);                      // change and clear
    }
    options.push_back({{}, 1}); // drop
    if (!required) {
        options.push_back({{{value, true}}, 1}); // set
        eachValue(true, 2);                      // change and set
    }
    options.push_back({found->second, 0});
    return options;
}

void Search::addNames()
{
    for (const auto& [name, condition] : m_filterMap) {
        m_options.emplace(name, optionsOf(name));
    }
    for (const auto& [name, values] : m_values) {
        m_options.emplace(name, optionsOf(name));
    }
}

/// Of one name, with any of these ways.
Costs costsOf(const Target& target, const std::string& name, const Option* begin, const Option* end)
{
    const auto declared = target.declared.find(name);
    const bool isNamed = target.named.count(name) != 0;
    unsigned least = never;
    unsigned leastNotRequired = never;
    unsigned leastRequired = never;
    for (const Option* option = begin; option != end; ++option) {
        const auto& [after, edits] = *option;
        if (after && declared != target.declared.end() && after->first != declared->second) {
            continue;
        }
        least = std::min(least, edits);
        if (!after || !after->second) {
            leastNotRequired = std::min(leastNotRequired, edits);
        } else if (isNamed) {
            leastRequired = std::min(leastRequired, edits);
        }
    }
    return {least, leastNotRequired, leastRequired == never ? never : leastRequired - least};
}

/// Decides once more. A text that cannot be rendered admits.
bool Search::admits(const FilterMap& filterMap) const
{
    struct Watcher {
        void isList(const Any&) const {}
        void isJudged(const filtering::Judgement&) const {}
        void noneMatches() const {}
        void isNoList(const Any&) const {}
        void isDecidedWithout(bool) const {}
    };
    return attempted([&] { return filtering::decide(m_filters, filterMap, Watcher{}); }).value_or(true);
}

std::optional<Conditions> Search::run()
{
    readDeclaration();
    addNames();
    // Of each target, what the names from one on cost, so that a name costs no look at the others.
    std::vector<std::vector<Costs>> from(m_targets.size(), std::vector<Costs>(m_options.size() + 1));
    unsigned fewest = never;
    for (std::size_t t = 0; t < m_targets.size(); ++t) {
        std::size_t at = m_options.size();
        for (auto entry = m_options.rbegin(); entry != m_options.rend(); ++entry, --at) {
            const auto& [name, options] = *entry;
            from[t][at - 1] =
                costsOf(m_targets[t], name, options.data(), options.data() + options.size()) + from[t][at];
        }
        fewest = std::min(fewest, fewestFor(m_targets[t], from[t][0]));
    }
    if (fewest >= never) {
        return std::nullopt;
    }
    FilterMap changed;
    std::vector<Costs> before(m_targets.size());
    std::size_t at = 0;
    for (const auto& [name, options] : m_options) {
        ++at;
        // The first way with which the rest can still be done with as few edits.
        const auto chosen = std::find_if(options.begin(), options.end(), [&, name = name](const Option& option) {
            unsigned least = never;
            for (std::size_t t = 0; t < m_targets.size(); ++t) {
                const Costs own = costsOf(m_targets[t], name, &option, &option + 1);
                least = std::min(least, fewestFor(m_targets[t], before[t] + own + from[t][at]));
            }
            return least == fewest;
        });
        for (std::size_t t = 0; t < m_targets.size(); ++t) {
            before[t] = before[t] + costsOf(m_targets[t], name, &*chosen, &*chosen + 1);
        }
        if (chosen->after) {
            changed.emplace(name, *chosen->after);
        }
    }
    return admits(changed) ? std::optional{toConditions(changed)} : std::nullopt;
}

} // namespace

std::optional<Conditions> smallestChange(const Any& filters, const FilterMap& filterMap)
{
    return Search{filters, filterMap}.run();
}

} // namespace ostrel::inspection
