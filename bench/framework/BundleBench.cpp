// Installing, starting, stopping and uninstalling bundles in files of their own.

#include "support/CpuStopwatch.h"
#include "support/RunningFramework.h"

#include <cppmicroservices/Bundle.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
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

/// A folder for copies that goes with the object.
class TemporaryFolder {
public:
    TemporaryFolder()
    {
        std::string pattern = (fs::temp_directory_path() / "ostrel_bench_XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr) {
            throw std::runtime_error("cannot make a folder like " + pattern + "; is its parent writable?");
        }
        m_path = pattern;
    }

    ~TemporaryFolder()
    {
        std::error_code ignored;
        fs::remove_all(m_path, ignored);
    }

    TemporaryFolder(TemporaryFolder const&) = delete;
    TemporaryFolder& operator=(TemporaryFolder const&) = delete;

    fs::path const& path() const { return m_path; }

private:
    fs::path m_path;
};

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
        TemporaryFolder const folder;
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
