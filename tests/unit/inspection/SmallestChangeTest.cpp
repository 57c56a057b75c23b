// The smallest change beside a search through all changes.
#include "container/MicroServicesContainer.h"
#include "inspection/FilterExplanation.h"
#include "unit/inspection/Declarations.h"

#include <gtest/gtest.h>

#include <container/DiagnosticLog.h>
#include <functional>
#include <map>
#include <optional>
#include <random>
#include <set>
#include <tuple>

using namespace ostrel::inspection;
using namespace ostrel::test;
using cppmicroservices::Any;
using cppmicroservices::AnyMap;
using ostrel::us_container::FilterMap;

namespace {

/// As the order of preference counts them.
enum Way { change, clear, changeAndClear, drop, set, changeAndSet, add, addRequired, untouched };

struct Option {
    Way way;
    std::string value;
    int edits;
    std::optional<std::pair<std::string, bool>> after;
};

bool decides(const Any& filters, const FilterMap& filterMap)
{
    return ostrel::us_container::checkFilter(filters, filterMap, "subject");
}

using Values = std::map<std::string, std::set<std::string>>;

Values valuesIn(const Any& filters)
{
    Values values;
    if (filters.Type() != typeid(std::vector<Any>)) {
        return values;
    }
    for (const Any& alternative : cppmicroservices::ref_any_cast<std::vector<Any>>(filters)) {
        if (alternative.Type() == typeid(AnyMap)) {
            for (const auto& [name, value] : cppmicroservices::ref_any_cast<AnyMap>(alternative)) {
                values[name];
                try {
                    values[name].insert(value.ToString());
                } catch (const std::runtime_error&) {
                    continue;
                }
            }
        }
    }
    return values;
}

/// Every way to treat a name, whatever it leads to.
std::vector<Option> optionsOf(const FilterMap& filterMap, const std::string& name, const std::set<std::string>& values)
{
    const auto found = filterMap.find(name);
    if (found == filterMap.end()) {
        std::vector<Option> options{{untouched, "", 0, std::nullopt}};
        for (const std::string& value : values) {
            options.push_back({add, value, 1, {{value, false}}});
            options.push_back({addRequired, value, 1, {{value, true}}});
        }
        return options;
    }
    const auto& [own, required] = found->second;
    std::vector<Option> options{{untouched, "", 0, found->second},
                                {drop, "", 1, std::nullopt},
                                {required ? clear : set, "", 1, {{own, !required}}}};
    for (const std::string& value : values) {
        if (value != own) {
            options.push_back({change, value, 1, {{value, required}}});
            options.push_back({required ? changeAndClear : changeAndSet, value, 2, {{value, !required}}});
        }
    }
    return options;
}

std::optional<Conditions> bruteForce(const Any& filters, const FilterMap& filterMap)
{
    Values names = valuesIn(filters);
    for (const auto& [name, condition] : filterMap) {
        names[name];
    }
    using Key = std::tuple<int, std::vector<std::pair<Way, std::string>>>;
    std::optional<std::pair<Key, FilterMap>> best;
    std::vector<std::pair<std::string, std::vector<Option>>> each;
    for (const auto& [name, values] : names) {
        each.emplace_back(name, optionsOf(filterMap, name, values));
    }
    Key key{0, {}};
    FilterMap changed;
    const std::function<void(std::size_t)> visit = [&](std::size_t at) {
        if (at == each.size()) {
            if ((!best || key < best->first) && decides(filters, changed)) {
                best.emplace(key, changed);
            }
            return;
        }
        for (const Option& option : each[at].second) {
            std::get<0>(key) += option.edits;
            std::get<1>(key).emplace_back(option.way, option.value);
            if (option.after) {
                changed[each[at].first] = *option.after;
            }
            visit(at + 1);
            changed.erase(each[at].first);
            std::get<1>(key).pop_back();
            std::get<0>(key) -= option.edits;
        }
    };
    visit(0);
    return best ? std::optional{toConditions(best->second)} : std::nullopt;
}

class Declarations {
public:
    explicit Declarations(unsigned seed) : m_random{seed} {}

    FilterMap conditions()
    {
        FilterMap filterMap;
        for (const char* const name : {"a", "b", "c"}) {
            if (below(3) != 0) {
                filterMap[name] = {text(), below(2) == 0};
            }
        }
        return filterMap;
    }

    Any declaration()
    {
        if (below(12) == 0) {
            return below(2) == 0 ? Any{} : map({{"a", text()}});
        }
        std::vector<Any> alternatives;
        for (unsigned count = below(4); count != 0; --count) {
            alternatives.push_back(alternative());
        }
        return list(alternatives);
    }

private:
    unsigned below(unsigned limit) { return static_cast<unsigned>(m_random()) % limit; }
    std::string text() { return std::string(1, static_cast<char>('x' + below(3))); }

    Any alternative()
    {
        if (below(10) == 0) {
            return Any{text()};
        }
        // Of each kind of map, as the one that finds keys in any case still compares them byte for byte here.
        AnyMap made{below(2) == 0 ? AnyMap::ORDERED_MAP : AnyMap::UNORDERED_MAP_CASEINSENSITIVE_KEYS};
        for (const char* const name : {"a", "b", "c", "A"}) {
            if (below(2) == 0 && made.count(name) == 0 && (name[0] != 'A' || below(4) == 0)) {
                made[name] = below(12) == 0 ? Any{Unreadable{}} : Any{text()};
            }
        }
        return made;
    }

    std::mt19937 m_random;
};

class SmallestChange : public testing::Test {
protected:
    SmallestChange() : m_mask{ostrel::us_container::diagnosticLog().enabledSeverities()}
    {
        ostrel::us_container::diagnosticLog().setEnabledSeverities(0);
    }
    ~SmallestChange() override { ostrel::us_container::diagnosticLog().setEnabledSeverities(m_mask); }

private:
    std::uint32_t m_mask;
};

TEST_F(SmallestChange, GivenAnyDeclarationAndConditions_WhenExplained_ThenNoSearchFindsABetterOne)
{
    std::map<bool, int> changed;
    for (unsigned seed = 0; seed < 3000; ++seed) {
        Declarations random{seed};
        const Any filters = random.declaration();
        const FilterMap filterMap = random.conditions();

        const FilterExplanation explanation = explainFilter(filters, filterMap);

        ASSERT_EQ(explanation.admitted, decides(filters, filterMap)) << "seed " << seed;
        if (explanation.admitted) {
            ASSERT_FALSE(explanation.change) << "seed " << seed;
            continue;
        }
        const auto expected = bruteForce(filters, filterMap);
        ++changed[expected.has_value()];
        ASSERT_EQ(explanation.change.has_value(), expected.has_value()) << "seed " << seed;
        if (expected) {
            ASSERT_EQ(toArguments(*explanation.change), toArguments(*expected)) << "seed " << seed;
            ASSERT_TRUE(decides(filters, toFilterMap(*explanation.change))) << "seed " << seed;
        }
    }
    EXPECT_GT(changed[true], 500);
    EXPECT_GT(changed[false], 100);
}

TEST_F(SmallestChange, GivenManyNamesAndAlternatives_WhenExplained_ThenItIsFound)
{
    std::vector<Any> alternatives;
    FilterMap filterMap;
    for (int i = 0; i < 60; ++i) {
        std::vector<std::pair<std::string, Any>> attributes;
        for (int k = 0; k <= i % 7; ++k) {
            attributes.emplace_back("name" + std::to_string(i + k), std::to_string(k));
        }
        alternatives.push_back(map(attributes));
        filterMap["name" + std::to_string(i)] = {"other", false};
    }

    const FilterExplanation explanation = explainFilter(list(alternatives), filterMap);

    ASSERT_TRUE(explanation.change);
    EXPECT_TRUE(decides(list(alternatives), toFilterMap(*explanation.change)));
    EXPECT_EQ(explanation.change->size(), 60U);
}

} // namespace
