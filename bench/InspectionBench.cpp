// What it costs to be told why.

#include "container/DiagnosticLog.h"
#include "container/MicroServicesContainer.h"
#include "platform/InstallBundles.h"
#include "support/BundleDirectory.h"
#include "support/FrameworkWithServices.h"

#include <cppmicroservices/Any.h>
#include <cppmicroservices/AnyMap.h>
#include <cppmicroservices/Bundle.h>

#include <benchmark/benchmark.h>

#include <cstdint>
#include <inspection/Explanation.h>
#include <inspection/FilterExplanation.h>
#include <inspection/Plan.h>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace {

using cppmicroservices::Any;
using cppmicroservices::AnyMap;
using cppmicroservices::BundleContext;
using ostrel::platform::toUtf16;
using ostrel::platform::Utf16Path;
using ostrel::us_container::FilterMap;

const std::string subject{"bench"};

/// An alternative of four attributes; the last one's value differs from its condition where `value` does.
Any fourAttributes(const std::string& value)
{
    AnyMap map{AnyMap::UNORDERED_MAP_CASEINSENSITIVE_KEYS};
    for (const char* const name : {"region", "language", "mode"}) {
        map[name] = std::string{"same"};
    }
    map["size"] = value;
    return Any(std::vector<Any>{Any(map)});
}

const FilterMap fourConditions{
    {"region", {"same", false}}, {"language", {"same", false}}, {"mode", {"same", true}}, {"size", {"large", false}}};

/// Question: what does an explanation cost beside the decision alone, without records?
/// Expected: at most ten times as much; of what is refused more, as the smallest change is looked for.
void explainOfFourByInspection(benchmark::State& state)
{
    const Any filters = fourAttributes(state.range(0) == 0 ? "large" : "small");
    for (auto _ : state) {
        benchmark::DoNotOptimize(ostrel::inspection::explainFilter(filters, fourConditions));
    }
}

void explainOfFourByHand(benchmark::State& state)
{
    ostrel::us_container::diagnosticLog().setEnabledSeverities(0);
    const Any filters = fourAttributes(state.range(0) == 0 ? "large" : "small");
    for (auto _ : state) {
        benchmark::DoNotOptimize(ostrel::us_container::checkFilter(filters, fourConditions, subject));
    }
}

/// As many alternatives of one attribute, or one alternative of as many attributes; the last one's value differs from
/// its condition.
Any manyOf(std::int64_t count, bool alternatives)
{
    std::vector<Any> list;
    AnyMap map{AnyMap::UNORDERED_MAP_CASEINSENSITIVE_KEYS};
    for (std::int64_t i = 0; i < count; ++i) {
        if (alternatives) {
            map = AnyMap{AnyMap::UNORDERED_MAP_CASEINSENSITIVE_KEYS};
        }
        map["name" + std::to_string(alternatives ? 0 : i)] = "value" + std::to_string(i);
        if (alternatives) {
            list.emplace_back(map);
        }
    }
    if (!alternatives) {
        list.emplace_back(map);
    }
    return Any(std::move(list));
}

const FilterMap oneCondition{{"name0", {"other", true}}};

/// Question: how does an explanation grow with the alternatives of a declaration, or with the attributes of one?
/// Expected: with attributes as the decision does, but that names are sorted. With alternatives quadratic where each
/// declares another text of one name, as here: each text is tried with each alternative.
void explainManyByInspection(benchmark::State& state)
{
    const Any filters = manyOf(state.range(0), state.range(1) != 0);
    for (auto _ : state) {
        benchmark::DoNotOptimize(ostrel::inspection::explainFilter(filters, oneCondition));
    }
}

void explainManyByHand(benchmark::State& state)
{
    ostrel::us_container::diagnosticLog().setEnabledSeverities(0);
    const Any filters = manyOf(state.range(0), state.range(1) != 0);
    for (auto _ : state) {
        benchmark::DoNotOptimize(ostrel::us_container::checkFilter(filters, oneCondition, subject));
    }
}

/// Times `work(context, directory)`, each time in a framework of its own in which nothing is installed.
template <typename Work>
void timeFresh(benchmark::State& state, Work work)
{
    ostrel::us_container::diagnosticLog().setEnabledSeverities(0);
    const bench::BundleDirectory& directory = bench::directoryOf(static_cast<int>(state.range(0)));
    std::optional<bench::FrameworkWithServices> framework;
    for (auto _ : state) {
        state.PauseTiming();
        framework.reset();
        framework.emplace(0);
        state.ResumeTiming();
        work(framework->context(), directory);
        state.PauseTiming();
        framework.reset();
        state.ResumeTiming();
    }
    state.SetComplexityN(state.range(0));
}

void installEach(const BundleContext& context, const bench::BundleDirectory& directory)
{
    for (const std::string& file : directory.files()) {
        benchmark::DoNotOptimize(ostrel::platform::installBundles(context, Utf16Path{toUtf16(file)}));
    }
}

/// Question: what does a plan as text cost beside the installation of each file?
/// Expected: less than a third more.
void planByInspection(benchmark::State& state)
{
    timeFresh(state, [](const BundleContext& context, const bench::BundleDirectory& directory) {
        benchmark::DoNotOptimize(
            toText(ostrel::inspection::planDirectory(context, directory.path(), fourConditions, {})));
    });
}

void planByHand(benchmark::State& state)
{
    timeFresh(state, installEach);
}

/// Question: and an explanation of all of them, which looks at the manifests a second time?
/// Expected: twice that.
void explainDirectoryByInspection(benchmark::State& state)
{
    timeFresh(state, [](const BundleContext& context, const bench::BundleDirectory& directory) {
        benchmark::DoNotOptimize(
            toText(ostrel::inspection::explainDirectory(context, directory.path(), fourConditions)));
    });
}

void explainDirectoryByHand(benchmark::State& state)
{
    timeFresh(state, installEach);
}

/// Question: does what `ostrel-host run` plans before make its start slower than one that only installs the directory
/// first?
/// Expected: no more than a tenth.
void planAndStartByInspection(benchmark::State& state)
{
    timeFresh(state, [](const BundleContext& context, const bench::BundleDirectory& directory) {
        benchmark::DoNotOptimize(ostrel::inspection::planDirectory(context, directory.path(), {}, {}));
        ostrel::us_container::MicroServicesContainer{context, Utf16Path{toUtf16(directory.path())}}.startBundles(
            FilterMap{});
    });
}

void planAndStartByHand(benchmark::State& state)
{
    timeFresh(state, [](const BundleContext& context, const bench::BundleDirectory& directory) {
        benchmark::DoNotOptimize(ostrel::platform::installBundles(context, Utf16Path{toUtf16(directory.path())}));
        ostrel::us_container::MicroServicesContainer{context, Utf16Path{toUtf16(directory.path())}}.startBundles(
            FilterMap{});
    });
}

} // namespace

BENCHMARK(explainOfFourByInspection)->ArgName("refused")->Arg(0)->Arg(1);
BENCHMARK(explainOfFourByHand)->ArgName("refused")->Arg(0)->Arg(1);
BENCHMARK(explainManyByInspection)->ArgNames({"count", "alternatives"})->ArgsProduct({{16, 256, 4096}, {0, 1}});
BENCHMARK(explainManyByHand)->ArgNames({"count", "alternatives"})->ArgsProduct({{16, 256, 4096}, {0, 1}});
BENCHMARK(planByInspection)->Arg(250)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(planByHand)->Arg(250)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(explainDirectoryByInspection)->Arg(250)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(explainDirectoryByHand)->Arg(250)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(planAndStartByInspection)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(planAndStartByHand)->Arg(1000)->Unit(benchmark::kMillisecond);
