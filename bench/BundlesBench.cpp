// Starting many bundles, each from a file of its own.

#include "container/DiagnosticLog.h"
#include "container/MicroServicesContainer.h"
#include "support/BundleDirectory.h"
#include "support/FrameworkWithServices.h"

#include <cppmicroservices/AnyMap.h>
#include <cppmicroservices/Bundle.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <dirent.h>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace {

using cppmicroservices::Bundle;
using cppmicroservices::BundleContext;
using ostrel::platform::toUtf16;
using ostrel::platform::Utf16Path;
using ostrel::us_container::FilterMap;
using ostrel::us_container::MicroServicesContainer;

/// A framework in which nothing is installed yet, and a container for a directory.
struct Fresh {
    explicit Fresh(const bench::BundleDirectory& directory)
        : container(framework.context(), Utf16Path{toUtf16(directory.path())})
    {
        ostrel::us_container::diagnosticLog().setEnabledSeverities(0);
    }

    bench::FrameworkWithServices framework{0};
    MicroServicesContainer container;
};

/// Times `work(fresh)`, in a framework of its own each time, after the untimed `prepare(fresh)`.
template <typename Prepare, typename Work>
void timeFresh(benchmark::State& state, Prepare prepare, Work work)
{
    const bench::BundleDirectory& directory = bench::directoryOf(static_cast<int>(state.range(0)));
    std::optional<Fresh> fresh;
    for (auto _ : state) {
        state.PauseTiming();
        fresh.reset();
        fresh.emplace(directory);
        prepare(*fresh, directory);
        state.ResumeTiming();
        work(*fresh, directory);
        state.PauseTiming();
        fresh.reset();
        state.ResumeTiming();
    }
    state.SetComplexityN(state.range(0));
}

void nothing(Fresh& /*fresh*/, const bench::BundleDirectory& /*directory*/) {}

void startAll(BundleContext context, const std::vector<std::string>& files)
{
    for (const std::string& file : files) {
        for (Bundle& bundle : context.InstallBundles(file)) {
            bundle.Start();
        }
    }
}

/// Question: what does starting n bundles by their names cost?
/// Expected: linear. Each file is read twice, once to see that it is a whole bundle for this framework.
void startNamesByContainer(benchmark::State& state)
{
    timeFresh(state, nothing, [](Fresh& fresh, const bench::BundleDirectory& directory) {
        fresh.container.startBundles(directory.names());
    });
}

void startNamesByHand(benchmark::State& state)
{
    timeFresh(state, nothing, [](Fresh& fresh, const bench::BundleDirectory& directory) {
        startAll(fresh.framework.context(), directory.files());
    });
}

/// Question: what does stopping and starting n bundles again cost?
/// Expected: linear. The stop forgets where the bundles were, so each file is looked at again.
void reloadByContainer(benchmark::State& state)
{
    timeFresh(
        state,
        [](Fresh& fresh, const bench::BundleDirectory& directory) { fresh.container.startBundles(directory.names()); },
        [](Fresh& fresh, const bench::BundleDirectory& /*directory*/) { fresh.container.reload(); });
}

void reloadByHand(benchmark::State& state)
{
    timeFresh(
        state,
        [](Fresh& fresh, const bench::BundleDirectory& directory) {
            startAll(fresh.framework.context(), directory.files());
        },
        [](Fresh& fresh, const bench::BundleDirectory& directory) {
            const BundleContext context = fresh.framework.context();
            for (const std::string& file : directory.files()) {
                for (Bundle& bundle : context.GetBundles(file)) {
                    bundle.Stop();
                }
            }
            startAll(context, directory.files());
        });
}

/// Question: what does starting a directory of n bundles under conditions cost?
/// Expected: linear; the directory is read once.
void startConditionsByContainer(benchmark::State& state)
{
    const FilterMap conditions{{"language", {"de", false}}};
    timeFresh(state, nothing, [&conditions](Fresh& fresh, const bench::BundleDirectory& /*directory*/) {
        fresh.container.startBundles(conditions);
    });
}

void startConditionsByHand(benchmark::State& state)
{
    timeFresh(state, nothing, [](Fresh& fresh, const bench::BundleDirectory& directory) {
        BundleContext context = fresh.framework.context();
        std::vector<std::string> names;
        DIR* const stream = ::opendir(directory.path().c_str());
        while (const dirent* const entry = ::readdir(stream)) {
            if (entry->d_type == DT_REG) {
                names.emplace_back(entry->d_name);
            }
        }
        ::closedir(stream);
        std::sort(names.begin(), names.end());
        for (const std::string& name : names) {
            for (Bundle& bundle : context.InstallBundles(directory.path() + "/" + name)) {
                benchmark::DoNotOptimize(bundle.GetHeaders().AtCompoundKey("zq.component.name").ToString());
                bundle.Start();
            }
        }
    });
}

} // namespace

BENCHMARK(startNamesByContainer)->Arg(1000)->Arg(4000)->Unit(benchmark::kMillisecond);
BENCHMARK(startNamesByHand)->Arg(1000)->Arg(4000)->Unit(benchmark::kMillisecond);
BENCHMARK(reloadByContainer)->Arg(1000)->Arg(4000)->Unit(benchmark::kMillisecond);
BENCHMARK(reloadByHand)->Arg(1000)->Arg(4000)->Unit(benchmark::kMillisecond);
BENCHMARK(startConditionsByContainer)->Arg(1000)->Arg(4000)->Unit(benchmark::kMillisecond);
BENCHMARK(startConditionsByHand)->Arg(1000)->Arg(4000)->Unit(benchmark::kMillisecond);
