#include "inspection/filter/SmallestChange.h"

#include "filtering/Decision.h"
#include "inspection/filter/Attempt.h"

#include <algorithm>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace ostrel::inspection {

using cppmicroservices::Any;
using us_container::FilterMap;

namespace {

constexpr unsigned never = std::numeric_limits<unsigned>::max() / 2; // so that two can be added

/// A condition as it may become, and in how many edits. Texts are those of the conditions and of the declaration.
struct Option {
    const std::string* value; ///< null: there is no condition
    bool required;
    unsigned edits;
};

/// A name of the conditions or of the declaration.
struct Name {
    const std::string* text;
    const std::pair<std::string, bool>* condition; ///< null where there is none
    std::size_t firstOption;                       ///< of all options; those of the next name end them
};

/// What an alternative says of a name.
struct Claim {
    bool isNamed = false;
    const std::string* declared = nullptr; ///< where there is a condition of that name, it must have this text
};

/// A way in which a declaration admits.
struct Target {
    std::vector<Claim> claims;   ///< of each name
    bool asksForRequired = true; ///< false: whatever is required, as a text that is reached then throws
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

/// Of one name, with any of these ways.
Costs costsOf(const Claim& claim, const Option* begin, const Option* end)
{
    unsigned least = never;
    unsigned leastNotRequired = never;
    unsigned leastRequired = never;
    for (const Option* option = begin; option != end; ++option) {
        if (option->value != nullptr && claim.declared != nullptr && *option->value != *claim.declared) {
            continue;
        }
        least = std::min(least, option->edits);
        if (option->value == nullptr || !option->required) {
            leastNotRequired = std::min(leastNotRequired, option->edits);
        } else if (claim.isNamed) {
            leastRequired = std::min(leastRequired, option->edits);
        }
    }
    return {least, leastNotRequired, leastRequired == never ? never : leastRequired - least};
}

struct SilentWatcher {
    void isList(const Any& /*filters*/) const {}
    void isJudged(const filtering::Judgement& /*judgement*/) const {}
    void noneMatches() const {}
    void isNoList(const Any& /*filters*/) const {}
    void isDecidedWithout(bool /*admitted*/) const {}
};

class Search {
public:
    Search(const Any& filters, const DeclaredTexts& texts, const FilterMap& filterMap)
        : m_filters{filters}, m_texts{texts}, m_filterMap{filterMap}
    {
    }

    std::optional<Conditions> run();

private:
    void addNames();
    void addOptions(const Name& name, const std::vector<const std::string*>& values);
    void addTargets();
    std::size_t placeOf(const std::string& name) const;
    const Option* optionsOf(std::size_t name) const { return m_options.data() + m_names[name].firstOption; }
    const Option* optionsEnd(std::size_t name) const
    {
        return m_options.data() + (name + 1 < m_names.size() ? m_names[name + 1].firstOption : m_options.size());
    }
    Conditions chosen(const std::vector<Costs>& from, unsigned fewest) const;
    bool admits(const Conditions& conditions) const;

    const Any& m_filters;
    const DeclaredTexts& m_texts;
    const FilterMap& m_filterMap;
    std::vector<Name> m_names;     // in byte order
    std::vector<Option> m_options; // the ways to treat each name, the preferred one first
    std::vector<Target> m_targets;
};

/// In the order of preference; "untouched" last.
///
/// @param values  declared for the name, in byte order, each once
void Search::addOptions(const Name& name, const std::vector<const std::string*>& values)
{
    const auto* const condition = name.condition;
    const Option untouched{condition != nullptr ? &condition->first : nullptr,
                           condition != nullptr && condition->second, 0};
    const auto eachValue = [&](bool required, unsigned edits) {
        for (const std::string* const value : values) {
            if (condition == nullptr || *value != condition->first) {
                m_options.push_back({value, required, edits});
            }
        }
    };
    if (!canBeCarried(*name.text)) {
        m_options.push_back(untouched);
        return;
    }
    if (condition == nullptr) {
        eachValue(false, 1); // add
        eachValue(true, 1);  // add required
        m_options.push_back(untouched);
        return;
    }
    const bool required = condition->second;
    eachValue(required, 1); // change
    if (required) {
        m_options.push_back({&condition->first, false, 1}); // clear
        eachValue(false, 2);                                // change and clear
    }
    m_options.push_back({nullptr, false, 1}); // drop
    if (!required) {
        m_options.push_back({&condition->first, true, 1}); // set
        eachValue(true, 2);                                // change and set
    }
    m_options.push_back(untouched);
}

void Search::addNames()
{
    // Each name with a text that is declared for it, or with none.
    using Use = std::pair<const std::string*, const std::string*>;
    std::size_t count = m_filterMap.size();
    for (const auto& texts : m_texts.alternatives) {
        count += texts.size();
    }
    std::vector<Use> uses;
    uses.reserve(count);
    m_names.reserve(count);
    m_options.reserve(5 * count);
    for (const auto& texts : m_texts.alternatives) {
        for (const auto& [name, text] : texts) {
            uses.emplace_back(name, text ? &*text : nullptr); // also without a text, as its condition may go
        }
    }
    for (const auto& entry : m_filterMap) {
        uses.emplace_back(&entry.first, nullptr);
    }
    std::sort(uses.begin(), uses.end(), [](const Use& a, const Use& b) {
        if (const int order = a.first->compare(*b.first); order != 0) {
            return order < 0;
        }
        return b.second != nullptr && (a.second == nullptr || *a.second < *b.second);
    });
    std::vector<const std::string*> values;
    for (auto use = uses.begin(); use != uses.end();) {
        const std::string* const name = use->first;
        values.clear();
        for (; use != uses.end() && *use->first == *name; ++use) {
            if (use->second != nullptr && (values.empty() || *values.back() != *use->second)) {
                values.push_back(use->second);
            }
        }
        const auto condition = m_filterMap.find(*name);
        m_names.push_back({name, condition != m_filterMap.end() ? &condition->second : nullptr, m_options.size()});
        addOptions(m_names.back(), values);
    }
}

std::size_t Search::placeOf(const std::string& name) const
{
    const auto found = std::lower_bound(m_names.begin(), m_names.end(), name,
                                        [](const Name& one, const std::string& text) { return *one.text < text; });
    return static_cast<std::size_t>(found - m_names.begin());
}

void Search::addTargets()
{
    if (!m_texts.isList) {
        m_targets.push_back({std::vector<Claim>(m_names.size()), true}); // names nothing, so nothing may be required
    }
    for (const auto& texts : m_texts.alternatives) {
        Target target{std::vector<Claim>(m_names.size()), true};
        for (const auto& [name, text] : texts) {
            Claim& claim = target.claims[placeOf(*name)];
            claim.isNamed = true;
            if (!target.asksForRequired) {
                continue; // not reached
            }
            target.asksForRequired = text.has_value();
            claim.declared = text ? &*text : nullptr;
        }
        m_targets.push_back(std::move(target));
    }
}

/// Decides once more. A text that cannot be rendered admits.
bool Search::admits(const Conditions& conditions) const
{
    const FilterMap filterMap = toFilterMap(conditions);
    return attempted([&] { return filtering::decide(m_filters, filterMap, SilentWatcher{}); }).value_or(true);
}

/// @param from  of each target, what the names from one on cost
Conditions Search::chosen(const std::vector<Costs>& from, unsigned fewest) const
{
    const std::size_t width = m_names.size() + 1;
    Conditions conditions;
    conditions.reserve(m_names.size());
    std::vector<Costs> before(m_targets.size());
    for (std::size_t n = 0; n < m_names.size(); ++n) {
        // The first way with which the rest can still be done with as few edits.
        const Option* const option = std::find_if(optionsOf(n), optionsEnd(n), [&](const Option& candidate) {
            for (std::size_t t = 0; t < m_targets.size(); ++t) {
                const Costs own = costsOf(m_targets[t].claims[n], &candidate, &candidate + 1);
                if (fewestFor(m_targets[t], before[t] + own + from[t * width + n + 1]) == fewest) {
                    return true;
                }
            }
            return false;
        });
        for (std::size_t t = 0; t < m_targets.size(); ++t) {
            before[t] = before[t] + costsOf(m_targets[t].claims[n], option, option + 1);
        }
        if (option->value != nullptr) {
            conditions.push_back({*m_names[n].text, *option->value, option->required});
        }
    }
    return conditions;
}

std::optional<Conditions> Search::run()
{
    addNames();
    addTargets();
    // So that a name costs no look at the others.
    const std::size_t width = m_names.size() + 1;
    std::vector<Costs> from(m_targets.size() * width);
    unsigned fewest = never;
    for (std::size_t t = 0; t < m_targets.size(); ++t) {
        for (std::size_t n = m_names.size(); n-- > 0;) {
            from[t * width + n] =
                costsOf(m_targets[t].claims[n], optionsOf(n), optionsEnd(n)) + from[t * width + n + 1];
        }
        fewest = std::min(fewest, fewestFor(m_targets[t], from[t * width]));
    }
    if (fewest >= never) {
        return std::nullopt;
    }
    Conditions conditions = chosen(from, fewest);
    return admits(conditions) ? std::optional{std::move(conditions)} : std::nullopt;
}

} // namespace

std::optional<Conditions> smallestChange(const Any& filters, const DeclaredTexts& texts, const FilterMap& filterMap)
{
    return Search{filters, texts, filterMap}.run();
}

} // namespace ostrel::inspection
