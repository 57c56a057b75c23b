// Delivering events to a hundred listeners. Each figure is that of the change which causes the event, delivery
// included.

#include "support/Services.h"

#include <cppmicroservices/ListenerToken.h>
#include <cppmicroservices/ServiceEvent.h>

#include <benchmark/benchmark.h>

#include <string>
#include <utility>
#include <vector>

namespace {

using bench::Services;

constexpr int listenerCount = 100;

/// A hundred listeners with one filter, from construction to destruction.
class Listeners {
public:
    Listeners(cppmicroservices::BundleContext context, std::string const& filter) : m_context(std::move(context))
    {
        for (int i = 0; i < listenerCount; ++i) {
            m_tokens.push_back(
                m_context.AddServiceListener([this](cppmicroservices::ServiceEvent const&) { ++m_calls; }, filter));
        }
    }

    ~Listeners()
    {
        for (auto& token : m_tokens) {
            m_context.RemoveListener(std::move(token));
        }
    }

    Listeners(Listeners const&) = delete;
    Listeners& operator=(Listeners const&) = delete;

    long calls() const { return m_calls; }

private:
    cppmicroservices::BundleContext m_context;
    std::vector<cppmicroservices::ListenerToken> m_tokens;
    long m_calls = 0;
};

void changeBefore(benchmark::State& state, std::string const& filter, bool expected)
{
    Services& services = bench::services(100);
    Listeners const listeners(services.context(), filter);
    auto const properties = Services::propertiesOf(0);
    for (auto _ : state) {
        services.registration(0).SetProperties(properties);
    }
    if ((listeners.calls() != 0) != expected) {
        state.SkipWithError("the listeners were called, or not called, against what their filter says");
    }
}

void eventToAllListeners(benchmark::State& state)
{
    changeBefore(state, std::string(), true);
}

void eventToFilteredListeners(benchmark::State& state)
{
    changeBefore(state, "(&(kind=kind0)(size<=5))", true);
}

void eventToNoListener(benchmark::State& state)
{
    changeBefore(state, "(&(kind=kind1)(size<=5))", false);
}

void addAndRemoveListener(benchmark::State& state)
{
    Services& services = bench::services(100);
    Listeners const others(services.context(), std::string());
    for (auto _ : state) {
        services.context().RemoveListener(
            services.context().AddServiceListener([](cppmicroservices::ServiceEvent const&) {}));
    }
}

} // namespace

BENCHMARK(eventToAllListeners)->Unit(benchmark::kMicrosecond);
BENCHMARK(eventToFilteredListeners)->Unit(benchmark::kMicrosecond);
BENCHMARK(eventToNoListener)->Unit(benchmark::kMicrosecond);
BENCHMARK(addAndRemoveListener)->Unit(benchmark::kMicrosecond);
