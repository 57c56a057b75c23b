// Finding services.

#include "support/Services.h"
#include "support/Sizes.h"

#include <benchmark/benchmark.h>

#include <string>

namespace {

using bench::Services;
using bench::Thing;

/// Question: what does it cost to get all n services of a class?
void classQuery(benchmark::State& state)
{
    Services& services = bench::services(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        benchmark::DoNotOptimize(services.context().GetServiceReferences<Thing>());
    }
}

/// The same without saying the class.
void queryForAll(benchmark::State& state)
{
    Services& services = bench::services(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        benchmark::DoNotOptimize(services.context().GetServiceReferences(std::string()));
    }
}

/// Question: what does it cost to find one of n services by its id?
void idQuery(benchmark::State& state)
{
    Services& services = bench::services(static_cast<int>(state.range(0)));
    std::string const filter = "(service.id=" + std::to_string(services.id(services.count() / 2)) + ")";
    for (auto _ : state) {
        benchmark::DoNotOptimize(services.context().GetServiceReferences(std::string(), filter));
    }
}

/// Question: what does a filter on other properties cost, of which three of a hundred services match?
void filterQuery(benchmark::State& state)
{
    Services& services = bench::services(static_cast<int>(state.range(0)));
    std::string const filter = Services::selectiveFilter();
    for (auto _ : state) {
        benchmark::DoNotOptimize(services.context().GetServiceReferences(std::string(), filter));
    }
}

void filterQueryOfClass(benchmark::State& state)
{
    Services& services = bench::services(static_cast<int>(state.range(0)));
    std::string const filter = Services::selectiveFilter();
    for (auto _ : state) {
        benchmark::DoNotOptimize(services.context().GetServiceReferences<Thing>(filter));
    }
}

/// Question: what if properties change before each query, of one service after the other? The figure includes the
/// change.
void filterQueryAfterChange(benchmark::State& state)
{
    Services& services = bench::services(static_cast<int>(state.range(0)));
    std::string const filter = Services::selectiveFilter();
    int which = 0;
    for (auto _ : state) {
        services.registration(which).SetProperties(Services::propertiesOf(which));
        which = (which + 1) % services.count();
        benchmark::DoNotOptimize(services.context().GetServiceReferences<Thing>(filter));
    }
}

/// Question: what does the best of n services of a class cost?
void bestReference(benchmark::State& state)
{
    Services& services = bench::services(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        benchmark::DoNotOptimize(services.context().GetServiceReference<Thing>());
    }
}

/// Question: what does reading one property through a reference cost?
void readProperty(benchmark::State& state)
{
    Services& services = bench::services(static_cast<int>(state.range(0)));
    auto const reference = services.reference(0);
    std::string const key = "size";
    for (auto _ : state) {
        benchmark::DoNotOptimize(reference.GetProperty(key));
    }
}

} // namespace

BENCHMARK(classQuery)->Apply(bench::atAllSizes);
BENCHMARK(queryForAll)->Apply(bench::atAllSizes);
BENCHMARK(idQuery)->Apply(bench::atAllSizes);
BENCHMARK(filterQuery)->Apply(bench::atAllSizes);
BENCHMARK(filterQueryOfClass)->Apply(bench::atAllSizes);
BENCHMARK(filterQueryAfterChange)->Apply(bench::atAllSizes);
BENCHMARK(bestReference)->Apply(bench::atAllSizes);
BENCHMARK(readProperty)->Arg(1000);
