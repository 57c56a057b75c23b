// Registering, unregistering, changing properties, and the memory that a registered service takes.

#include "support/CpuStopwatch.h"
#include "support/Services.h"
#include "support/Sizes.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <malloc.h>
#include <numeric>
#include <random>
#include <vector>

namespace {

using bench::Services;

/// A tenth of the services, but ten at least, in an order that has nothing to do with that of their registration.
class Batch {
public:
    explicit Batch(int services) : m_all(static_cast<std::size_t>(services)), m_size(std::max(10, services / 10))
    {
        std::iota(m_all.begin(), m_all.end(), 0);
    }

    int size() const { return m_size; }

    void draw()
    {
        for (std::size_t i = 0; i < static_cast<std::size_t>(m_size); ++i) {
            std::uniform_int_distribution<std::size_t> rest(i, m_all.size() - 1);
            std::swap(m_all[i], m_all[rest(m_random)]);
        }
    }

    template <typename Work>
    void forEach(Work work) const
    {
        std::for_each(m_all.begin(), m_all.begin() + m_size, work);
    }

private:
    std::vector<int> m_all;
    int m_size;
    std::minstd_rand m_random{1}; // the same services in each build
};

/// Question: what does registering one more service cost where there are n?
void registerService(benchmark::State& state)
{
    Services& services = bench::services(static_cast<int>(state.range(0)));
    Batch batch(services.count());
    for (auto _ : state) {
        batch.draw();
        batch.forEach([&](int which) { services.registration(which).Unregister(); });
        state.SetIterationTime(bench::secondsEach(
            batch.size(), [&] { batch.forEach([&](int which) { services.registerAgain(which); }); }));
    }
}

/// Question: what does unregistering one of n services cost?
void unregisterService(benchmark::State& state)
{
    Services& services = bench::services(static_cast<int>(state.range(0)));
    Batch batch(services.count());
    for (auto _ : state) {
        batch.draw();
        state.SetIterationTime(bench::secondsEach(
            batch.size(), [&] { batch.forEach([&](int which) { services.registration(which).Unregister(); }); }));
        batch.forEach([&](int which) { services.registerAgain(which); });
    }
}

/// Question: what does replacing the properties of one of n services cost, with its ranking and without?
void changeProperties(benchmark::State& state)
{
    Services& services = bench::services(static_cast<int>(state.range(0)));
    auto const properties = Services::propertiesOf(0);
    for (auto _ : state) {
        services.registration(0).SetProperties(properties);
    }
}

void changeRanking(benchmark::State& state)
{
    Services& services = bench::services(static_cast<int>(state.range(0)));
    auto high = Services::propertiesOf(0);
    high["service.ranking"] = 1;
    auto const low = Services::propertiesOf(0);
    bool up = false;
    for (auto _ : state) {
        up = !up;
        services.registration(0).SetProperties(up ? high : low);
    }
    services.registration(0).SetProperties(low);
}

/// Question: how many bytes of the heap does a registered service take? Everything is counted that malloc() handed out
/// from before the first registration to after the last one: the object and the registration handle as well.
void memoryOfService(benchmark::State& state)
{
    int const count = static_cast<int>(state.range(0));
    for (auto _ : state) {
        bench::RunningFramework const framework;
        auto context = framework.context();
        std::vector<bench::Services::Registration> registrations(static_cast<std::size_t>(count));
        auto const object = bench::services(10).context().GetService(bench::services(10).reference(0));
        // What the first service of all brings into being is not the n-th one's.
        (void)context.RegisterService<bench::Thing>(object, Services::propertiesOf(0));
        auto const before = mallinfo2().uordblks;
        for (int i = 0; i < count; ++i) {
            registrations[static_cast<std::size_t>(i)] =
                context.RegisterService<bench::Thing>(object, Services::propertiesOf(i));
        }
        state.counters["bytes"] = static_cast<double>(mallinfo2().uordblks - before) / count;
    }
}

} // namespace

// The number of batches is set: the library counts the timed part alone, and would run for minutes to fill its least
// time with it.
BENCHMARK(registerService)->Arg(10)->Arg(100)->Iterations(1000)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(registerService)->Arg(1000)->Iterations(100)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(registerService)->Arg(10000)->Iterations(5)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(unregisterService)->Arg(10)->Arg(100)->Iterations(1000)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(unregisterService)->Arg(1000)->Iterations(100)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(unregisterService)->Arg(10000)->Iterations(5)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(changeProperties)->Apply(bench::atAllSizes);
BENCHMARK(changeRanking)->Arg(10)->Arg(100)->Arg(1000)->Unit(benchmark::kMicrosecond);
BENCHMARK(changeRanking)->Arg(10000)->Iterations(2)->Unit(benchmark::kMicrosecond);
BENCHMARK(memoryOfService)->Arg(10000)->Iterations(1)->Unit(benchmark::kMillisecond);
