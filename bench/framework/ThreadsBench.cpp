// Four threads at once, in wall time. The figure of a line is the time in which each thread does one operation.

#include "support/Services.h"

#include <benchmark/benchmark.h>

#include <string>

namespace {

using bench::Services;
using bench::Thing;

constexpr int serviceCount = 1000;
constexpr int threadCount = 4;

/// Made by the first thread. The others come to it after the library has let all of them begin.
Services* shared = nullptr;

void share(benchmark::State& state)
{
    if (state.thread_index() == 0) {
        shared = &bench::services(serviceCount);
    }
}

/// Question: do threads that get and release the same service hold each other up?
void threadsGetSameService(benchmark::State& state)
{
    share(state);
    cppmicroservices::ServiceReference<Thing> reference;
    for (auto _ : state) {
        if (!reference) {
            reference = shared->context().GetServiceReference<Thing>();
        }
        benchmark::DoNotOptimize(shared->context().GetService(reference));
    }
}

/// The same with a service of its own for each thread.
void threadsGetDifferentServices(benchmark::State& state)
{
    share(state);
    cppmicroservices::ServiceReference<Thing> reference;
    for (auto _ : state) {
        if (!reference) {
            reference = shared->reference(state.thread_index() * 100);
        }
        benchmark::DoNotOptimize(shared->context().GetService(reference));
    }
}

/// Question: do threads that look for services hold each other up?
void threadsFindById(benchmark::State& state)
{
    share(state);
    std::string filter;
    for (auto _ : state) {
        if (filter.empty()) {
            filter = "(service.id=" + std::to_string(shared->id(state.thread_index() * 100)) + ")";
        }
        benchmark::DoNotOptimize(shared->context().GetServiceReferences(std::string(), filter));
    }
}

void threadsFindByFilter(benchmark::State& state)
{
    share(state);
    std::string const filter = Services::selectiveFilter();
    for (auto _ : state) {
        benchmark::DoNotOptimize(shared->context().GetServiceReferences<Thing>(filter));
    }
}

void threadsFindBest(benchmark::State& state)
{
    share(state);
    for (auto _ : state) {
        benchmark::DoNotOptimize(shared->context().GetServiceReference<Thing>());
    }
}

void onThreads(benchmark::internal::Benchmark* benchmark)
{
    benchmark->Threads(threadCount)->UseRealTime()->Unit(benchmark::kMicrosecond);
}

} // namespace

BENCHMARK(threadsGetSameService)->Apply(onThreads);
BENCHMARK(threadsGetDifferentServices)->Apply(onThreads);
BENCHMARK(threadsFindById)->Apply(onThreads);
BENCHMARK(threadsFindByFilter)->Apply(onThreads);
BENCHMARK(threadsFindBest)->Apply(onThreads);
