// What the installation of a bundle costs as its file grows by what nobody loads.

#include "platform/InstallBundles.h"
#include "support/LargeLibrary.h"
#include "support/TemporaryDirectory.h"

#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/Framework.h>
#include <cppmicroservices/FrameworkEvent.h>
#include <cppmicroservices/FrameworkFactory.h>

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace {

using Bundles = std::vector<cppmicroservices::Bundle>;

/// Measures `install`, which is given a context and the path of a library of state.range(0) MiB. It is uninstalled each
/// time, as what is installed already is not looked at.
void installLargeFile(benchmark::State& state,
                      const std::function<Bundles(cppmicroservices::BundleContext, const std::string&)>& install)
{
    const ostrel::test::TemporaryDirectory directory;
    const std::string file = (directory.path() / "large.so").string();
    ostrel::test::writeLargeLibrary(file, ostrel::test::contentOf(BENCH_BUNDLE_DIRECTORY "/libbench_services.so"),
                                    static_cast<std::uint64_t>(state.range(0)) << 20U);
    auto framework = cppmicroservices::FrameworkFactory().NewFramework();
    framework.Start();
    for (auto _ : state) {
        auto bundles = install(framework.GetBundleContext(), file);
        state.PauseTiming();
        for (auto& bundle : bundles) {
            bundle.Uninstall();
        }
        state.ResumeTiming();
    }
    framework.Stop();
    framework.WaitForStop(std::chrono::milliseconds::zero());
}

/// Question: what does installBundles() cost beside the framework's own installation, and does the file's size count?
/// Expected: twice as much, as both look into the file, at every size.
void installLargeFileByContainer(benchmark::State& state)
{
    installLargeFile(state, [](cppmicroservices::BundleContext context, const std::string& file) {
        return ostrel::platform::installBundles(std::move(context),
                                                ostrel::platform::Utf16Path{ostrel::platform::toUtf16(file)});
    });
}

void installLargeFileByHand(benchmark::State& state)
{
    installLargeFile(state, [](cppmicroservices::BundleContext context, const std::string& file) {
        return context.InstallBundles(file);
    });
}

} // namespace

BENCHMARK(installLargeFileByContainer)->ArgName("MiB")->Arg(0)->Arg(40)->Arg(400)->Unit(benchmark::kMicrosecond);
BENCHMARK(installLargeFileByHand)->ArgName("MiB")->Arg(0)->Arg(40)->Arg(400)->Unit(benchmark::kMicrosecond);
