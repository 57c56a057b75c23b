#include "inspection/SmallestChange.h"

#include "filtering/Decision.h"

#include <cppmicroservices/AnyMap.h>

#include <algorithm>
#include <cxxabi.h>
#include <limits>
#include <map>
#include <new>
#include <set>
#include <typeinfo>
#include <utility>

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

/// The text of a value, or none when it cannot be rendered.
// UBSan: the reference to the unwinding of a thread that ends is null in libstdc++.
__attribute__((no_sanitize("null"))) std::optional<std::string> textOf(const Any& value)
{
    try {
        return value.ToString();
    } catch (abi::__forced_unwind&) {
        throw;
    } catch (const std::bad_alloc&) {
        throw;
    } catch (...) {
        return std::nullopt;
    }
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
    unsigned fewestEdits(const Target& target) const;
    unsigned fewestEdits() const;
    bool admits(const FilterMap& filterMap) const;

    const Any& m_filters;
    const FilterMap& m_filterMap;
    std::vector<Target> m_targets;
    std::map<std::string, std::set<std::string>> m_values; // the texts declared for a name
    std::map<std::string, std::vector<Option>> m_options;  // the ways that are still open for a name, the first best
};

void Search::readAlternative(const AnyMap& alternative)
{
    Target target;
    for (const auto& [attribute, value] : alternative) {
        target.named.insert(attribute);
        m_values[attribute]; // also without a text, as its condition may go
        const auto text = textOf(value);
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

/// With the ways that are open: each name by itself, but for one that has to be required if any is.
unsigned Search::fewestEdits(const Target& target) const
{
    unsigned any = 0;           // whatever is required
    unsigned none = 0;          // nothing is
    unsigned toRequire = never; // what it costs more to have a name required that the target names
    for (const auto& [name, options] : m_options) {
        const auto declared = target.declared.find(name);
        const bool isNamed = target.named.count(name) != 0;
        unsigned least = never;
        unsigned leastNotRequired = never;
        unsigned leastRequired = never;
        for (const auto& [after, edits] : options) {
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
        any = std::min(any + least, never);
        none = std::min(none + leastNotRequired, never);
        if (least != never && leastRequired != never) {
            toRequire = std::min(toRequire, leastRequired - least);
        }
    }
    if (!target.asksForRequired) {
        return any;
    }
    return std::min(none, std::min(any + toRequire, never));
}

unsigned Search::fewestEdits() const
{
    unsigned fewest = never;
    for (const Target& target : m_targets) {
        fewest = std::min(fewest, fewestEdits(target));
    }
    return fewest;
}

/// Decides once more. A text that cannot be rendered admits.
// UBSan: the reference to the unwinding of a thread that ends is null in libstdc++.
__attribute__((no_sanitize("null"))) bool Search::admits(const FilterMap& filterMap) const
{
    struct Watcher {
        void isList(const Any&) const {}
        void isJudged(const filtering::Judgement&) const {}
        void noneMatches() const {}
        void isNoList(const Any&) const {}
        void isDecidedWithout(bool) const {}
    };
    try {
        return filtering::decide(m_filters, filterMap, Watcher{});
    } catch (abi::__forced_unwind&) {
        throw;
    } catch (const std::bad_alloc&) {
        throw;
    } catch (...) {
        return true;
    }
}

std::optional<Conditions> Search::run()
{
    readDeclaration();
    addNames();
    const unsigned fewest = fewestEdits();
    if (fewest >= never) {
        return std::nullopt;
    }
    FilterMap changed;
    for (auto& [name, open] : m_options) {
        // The first way with which the rest can still be done with as few edits.
        std::vector<Option> options = std::exchange(open, {});
        for (Option& option : options) {
            open.assign(1, option);
            if (fewestEdits() == fewest) {
                break;
            }
        }
        if (const State& after = open.front().after) {
            changed.emplace(name, *after);
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
