#include "container/DiagnosticLog.h"
#include "container/MicroServicesContainer.h"
#include "support/Echo.h"
#include "support/FrameworkWithServices.h"
#include "support/HandWritten.h"

#include <benchmark/benchmark.h>

#include <string>

namespace {

using ostrel::platform::toUtf16;
using ostrel::platform::Utf16Path;
using ostrel::us_container::MicroServicesContainer;

const std::string echoName = "bench::Echo";

/// A container that has started the bundle of the benchmarks, beside hand-written code over the same framework.
struct Setting {
    explicit Setting(benchmark::State& state)
        : host(static_cast<int>(state.range(0))),
          container(host.context(), Utf16Path{toUtf16(BENCH_BUNDLE_DIRECTORY)}),
          byHand(host.context())
    {
        ostrel::us_container::diagnosticLog().setEnabledSeverities(0);
        container.startAllBundles();
        location = container.listManuallyLoadedBundles().at(0);
    }

    bench::FrameworkWithServices host;
    MicroServicesContainer container;
    bench::HandWritten byHand;
    std::string location;
};

/// Runs `work` timed and `undo` untimed, as often as the library asks.
template <typename Work, typename Undo>
void timeOnly(benchmark::State& state, Work work, Undo undo)
{
    for (auto _ : state) {
        work();
        state.PauseTiming();
        undo();
        state.ResumeTiming();
    }
    state.SetComplexityN(state.range(0));
}

/// Question: what does loading n services of one class under the class's name cost?
/// Expected: quadratic by rule, since each reference is compared with those already held under the name; no more than
/// the same comparisons written by hand.
void loadClassByContainer(benchmark::State& state)
{
    Setting setting{state};
    timeOnly(
        state, [&] { setting.container.loadService(echoName); }, [&] { setting.container.unloadService(echoName); });
}

void loadClassByHand(benchmark::State& state)
{
    Setting setting{state};
    timeOnly(
        state, [&] { setting.byHand.load(echoName); }, [&] { setting.byHand.unload(echoName); });
}

/// Question: what does loading each service of a started bundle by its id cost?
/// Expected: linear where the framework answers queries by id from an index.
void loadAllByContainer(benchmark::State& state)
{
    Setting setting{state};
    timeOnly(
        state, [&] { setting.container.loadAllServices(); }, [&] { setting.container.unloadAllServices(); });
}

void loadAllByHand(benchmark::State& state)
{
    Setting setting{state};
    timeOnly(
        state, [&] { setting.byHand.loadAllOf(setting.location); }, [&] { setting.byHand.unloadAll(); });
}

/// Question: what does unloading them all cost?
/// Expected: linear, and no more than by hand.
void unloadAllByContainer(benchmark::State& state)
{
    Setting setting{state};
    setting.container.loadAllServices();
    timeOnly(
        state, [&] { setting.container.unloadAllServices(); }, [&] { setting.container.loadAllServices(); });
}

void unloadAllByHand(benchmark::State& state)
{
    Setting setting{state};
    setting.byHand.loadAllOf(setting.location);
    timeOnly(
        state, [&] { setting.byHand.unloadAll(); }, [&] { setting.byHand.loadAllOf(setting.location); });
}

/// Question: what does the whole report on n loaded services cost?
/// Expected: what the framework's own answers cost.
void reportByContainer(benchmark::State& state)
{
    Setting setting{state};
    setting.container.loadAllServices();
    for (auto _ : state) {
        benchmark::DoNotOptimize(setting.container.getMicroServicesString());
    }
    state.SetComplexityN(state.range(0));
}

void reportByHand(benchmark::State& state)
{
    Setting setting{state};
    setting.byHand.loadAllOf(setting.location);
    for (auto _ : state) {
        benchmark::DoNotOptimize(setting.byHand.report(setting.location));
    }
    state.SetComplexityN(state.range(0));
}

} // namespace

BENCHMARK(loadClassByContainer)->Arg(125)->Arg(250)->Arg(500)->Arg(1000)->Unit(benchmark::kMicrosecond);
BENCHMARK(loadClassByHand)->Arg(125)->Arg(250)->Arg(500)->Arg(1000)->Unit(benchmark::kMicrosecond);
BENCHMARK(loadAllByContainer)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);
BENCHMARK(loadAllByHand)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);
BENCHMARK(unloadAllByContainer)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);
BENCHMARK(unloadAllByHand)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);
BENCHMARK(reportByContainer)->Arg(100)->Arg(1000)->Unit(benchmark::kMicrosecond);
BENCHMARK(reportByHand)->Arg(100)->Arg(1000)->Unit(benchmark::kMicrosecond);
