// Getting the objects of services, and letting them go.

#include "support/CpuStopwatch.h"
#include "support/Services.h"
#include "support/Sizes.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

namespace {

using bench::Services;
using bench::Thing;

/// References to as many different services as are used at once, and room for the objects.
struct Users {
    explicit Users(Services& theServices) : services(theServices), objects(size)
    {
        for (int i = 0; i < size; ++i) {
            references.push_back(services.reference(i * (services.count() / size)));
        }
    }

    void get()
    {
        for (std::size_t i = 0; i < size; ++i) {
            objects[i] = services.context().GetService(references[i]);
        }
    }

    void release()
    {
        for (auto& object : objects) {
            object.reset();
        }
    }

    static constexpr int size = 10;
    Services& services;
    std::vector<cppmicroservices::ServiceReference<Thing>> references;
    std::vector<std::shared_ptr<Thing>> objects;
};

/// Question: what does it cost to get a service that the bundle does not use yet?
void getServiceFirst(benchmark::State& state)
{
    Users users(bench::services(static_cast<int>(state.range(0))));
    for (auto _ : state) {
        state.SetIterationTime(bench::secondsEach(Users::size, [&] { users.get(); }));
        users.release();
    }
}

/// Question: what does it cost to get one that the bundle uses already?
void getServiceAgain(benchmark::State& state)
{
    Services& services = bench::services(static_cast<int>(state.range(0)));
    Users held(services);
    held.get();
    Users users(services);
    for (auto _ : state) {
        state.SetIterationTime(bench::secondsEach(Users::size, [&] { users.get(); }));
        users.release();
    }
}

/// Question: what does it cost to let go of the last pointer to a service?
void releaseService(benchmark::State& state)
{
    Users users(bench::services(static_cast<int>(state.range(0))));
    for (auto _ : state) {
        users.get();
        state.SetIterationTime(bench::secondsEach(Users::size, [&] { users.release(); }));
    }
}

} // namespace

BENCHMARK(getServiceFirst)->Apply(bench::atAllSizes)->UseManualTime()->Iterations(5000);
BENCHMARK(getServiceAgain)->Apply(bench::atAllSizes)->UseManualTime()->Iterations(5000);
BENCHMARK(releaseService)->Apply(bench::atAllSizes)->UseManualTime()->Iterations(5000);
