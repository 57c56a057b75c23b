// Installing, starting, stopping and uninstalling bundles in files of their own.

#include "support/CpuStopwatch.h"
#include "support/LargeLibrary.h"
#include "support/PeakMemory.h"
#include "support/RunningFramework.h"
#include "support/TemporaryDirectory.h"

#include <cppmicroservices/Bundle.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using Bundles = std::vector<cppmicroservices::Bundle>;

/// The files of one kind: "active" ones have an activator that registers a service, "passive" ones have none.
std::vector<std::string> filesOf(std::string const& kind)
{
    std::vector<std::string> files;
    for (auto const& entry : fs::directory_iterator(fs::path(BENCH_BUNDLE_DIRECTORY) / kind)) {
        files.push_back(entry.path().string());
    }
    std::sort(files.begin(), files.end());
    return files;
}

/// Copies, which a process has not loaded before.
std::vector<std::string> copied(std::vector<std::string> const& files, fs::path const& to)
{
    std::vector<std::string> copies;
    for (auto const& file : files) {
        copies.push_back((to / fs::path(file).filename()).string());
        fs::copy_file(file, copies.back());
    }
    return copies;
}

Bundles install(cppmicroservices::BundleContext context, std::vector<std::string> const& files)
{
    Bundles bundles;
    bundles.reserve(files.size());
    for (auto const& file : files) {
        for (auto& bundle : context.InstallBundles(file)) {
            bundles.push_back(std::move(bundle));
        }
    }
    return bundles;
}

template <typename Work>
double secondsEachOf(Bundles& bundles, Work work)
{
    return bench::secondsEach(static_cast<int>(bundles.size()), [&] {
        for (auto& bundle : bundles) {
            work(bundle);
        }
    });
}

void start(cppmicroservices::Bundle& bundle)
{
    bundle.Start();
}

void stop(cppmicroservices::Bundle& bundle)
{
    bundle.Stop();
}

void uninstall(cppmicroservices::Bundle& bundle)
{
    bundle.Uninstall();
}

void installBundle(benchmark::State& state)
{
    bench::RunningFramework const framework;
    auto const files = filesOf("passive");
    for (auto _ : state) {
        Bundles bundles;
        state.SetIterationTime(
            bench::secondsEach(static_cast<int>(files.size()), [&] { bundles = install(framework.context(), files); }));
        std::for_each(bundles.begin(), bundles.end(), uninstall);
    }
}

/// Question: what does the installation of a library cost as it grows by what nobody loads, debug information say?
/// Expected: nothing; its headers and its archive are read, wherever they lie. Memory is what the process grows by.
void installBundleOfSize(benchmark::State& state)
{
    bench::RunningFramework const framework;
    ostrel::test::TemporaryDirectory const folder;
    auto const file = (folder.path() / "large.so").string();
    ostrel::test::writeLargeLibrary(file, ostrel::test::contentOf(filesOf("passive").front()),
                                    static_cast<std::uint64_t>(state.range(0)) << 20U);
    auto const before = bench::peakMemory();
    for (auto _ : state) {
        Bundles bundles;
        state.SetIterationTime(bench::secondsEach(1, [&] { bundles = install(framework.context(), {file}); }));
        std::for_each(bundles.begin(), bundles.end(), uninstall);
    }
    state.counters["grownMiB"] = static_cast<double>(bench::peakMemory() - before) / 1048576;
}

void uninstallBundle(benchmark::State& state)
{
    bench::RunningFramework const framework;
    auto const files = filesOf("passive");
    for (auto _ : state) {
        auto bundles = install(framework.context(), files);
        state.SetIterationTime(secondsEachOf(bundles, uninstall));
    }
}

/// Question: what does the first start of all cost, with the loading of the library?
void startBundleFirst(benchmark::State& state)
{
    bench::RunningFramework const framework;
    auto const files = filesOf("active");
    for (auto _ : state) {
        ostrel::test::TemporaryDirectory const folder;
        auto bundles = install(framework.context(), copied(files, folder.path()));
        state.SetIterationTime(secondsEachOf(bundles, start));
        std::for_each(bundles.begin(), bundles.end(), uninstall);
    }
}

/// Question: what do later starts and the stops cost, with an activator and without?
void startBundle(benchmark::State& state, std::string const& kind)
{
    bench::RunningFramework const framework;
    auto bundles = install(framework.context(), filesOf(kind));
    std::for_each(bundles.begin(), bundles.end(), start);
    for (auto _ : state) {
        std::for_each(bundles.begin(), bundles.end(), stop);
        state.SetIterationTime(secondsEachOf(bundles, start));
    }
}

void stopBundle(benchmark::State& state, std::string const& kind)
{
    bench::RunningFramework const framework;
    auto bundles = install(framework.context(), filesOf(kind));
    for (auto _ : state) {
        std::for_each(bundles.begin(), bundles.end(), start);
        state.SetIterationTime(secondsEachOf(bundles, stop));
    }
}

/// Question: what does a whole framework cost, from its making to the end of its stop? In wall time, as other threads
/// may take part.
void frameworkUpAndDown(benchmark::State& state)
{
    for (auto _ : state) {
        bench::RunningFramework const framework;
    }
}

} // namespace

BENCHMARK(installBundle)->UseManualTime()->Iterations(100)->Unit(benchmark::kMicrosecond);
BENCHMARK(installBundleOfSize)
    ->ArgName("MiB")
    ->Arg(0)
    ->Arg(40)
    ->Arg(400)
    ->UseManualTime()
    ->Iterations(100)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(uninstallBundle)->UseManualTime()->Iterations(100)->Unit(benchmark::kMicrosecond);
// Each iteration leaves its libraries loaded, as no framework unloads one.
BENCHMARK(startBundleFirst)->UseManualTime()->Iterations(5)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(startBundle, withActivator, "active")
    ->UseManualTime()
    ->Iterations(100)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(startBundle, without, "passive")->UseManualTime()->Iterations(100)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(stopBundle, withActivator, "active")->UseManualTime()->Iterations(100)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(stopBundle, without, "passive")->UseManualTime()->Iterations(100)->Unit(benchmark::kMicrosecond);
BENCHMARK(frameworkUpAndDown)->UseRealTime()->Unit(benchmark::kMicrosecond);
