#include "container/DiagnosticLog.h"
#include "container/MicroServicesContainer.h"

#include <cppmicroservices/AnyMap.h>

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

namespace {

using cppmicroservices::Any;
using cppmicroservices::AnyMap;
using ostrel::us_container::checkFilter;
using ostrel::us_container::diagnosticLog;
using ostrel::us_container::FilterMap;

/// Three alternatives of which the last matches, so that all are looked at.
Any declaration()
{
    const auto alternative = [](const std::string& region) {
        AnyMap map{AnyMap::UNORDERED_MAP_CASEINSENSITIVE_KEYS};
        map["region"] = region;
        return Any(map);
    };
    return Any(std::vector<Any>{alternative("north"), alternative("east"), alternative("south")});
}

const FilterMap conditions{{"region", {"south", true}}};
const std::string subject = "bench.subject";

/// Question: what does a decision cost whose records nobody wants?
/// Expected: at most a microsecond; no text, no JSON.
void decideByContainerMasked(benchmark::State& state)
{
    diagnosticLog().setEnabledSeverities(0);
    const Any filters = declaration();
    for (auto _ : state) {
        benchmark::DoNotOptimize(checkFilter(filters, conditions, subject));
    }
}

/// The same decision written by hand: one copy of each alternative, its texts, the look-ups.
void decideByHandMasked(benchmark::State& state)
{
    const Any filters = declaration();
    for (auto _ : state) {
        bool admitted = false;
        for (const Any& element : cppmicroservices::ref_any_cast<std::vector<Any>>(filters)) {
            const auto alternative = cppmicroservices::any_cast<AnyMap>(element);
            bool equal = true;
            for (const auto& [attribute, value] : alternative) {
                const std::string text = value.ToString();
                const auto expected = conditions.find(attribute);
                if (expected != conditions.end() && expected->second.first != text) {
                    equal = false;
                    break;
                }
            }
            bool named = false;
            for (const auto& [attribute, condition] : conditions) {
                named = named || (condition.second && alternative.count(attribute) != 0);
            }
            if (equal && named) {
                admitted = true;
                break;
            }
        }
        benchmark::DoNotOptimize(admitted);
    }
}

/// Question: what do the records add, into a sink that throws them away?
/// Expected: several microseconds, nearly all of them Boost.Log's and the JSON's.
void decideByContainerLogged(benchmark::State& state)
{
    diagnosticLog().setEnabledSeverities(~std::uint32_t{0});
    const Any filters = declaration();
    for (auto _ : state) {
        benchmark::DoNotOptimize(checkFilter(filters, conditions, subject));
    }
}

} // namespace

BENCHMARK(decideByContainerMasked);
BENCHMARK(decideByHandMasked);
BENCHMARK(decideByContainerLogged);
