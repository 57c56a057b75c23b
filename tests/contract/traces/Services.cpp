#include "contract/traces/Services.h"

#include "contract/BundlesByManifest.h"
#include "contract/traces/RandomValue.h"
#include "contract/traces/Subjects.h"

#include <cppmicroservices/Constants.h>
#include <cppmicroservices/FrameworkEvent.h>
#include <cppmicroservices/ServiceEvent.h>

#include <algorithm>
#include <cctype>
#include <chrono>
#include <sstream>
#include <vector>

namespace contract {

using namespace cppmicroservices;

namespace {

long nextId(BundleContext context)
{
    auto registration =
        context.RegisterService(std::make_shared<InterfaceMap>(InterfaceMap{{"first", std::make_shared<int>(0)}}));
    auto const id = any_cast<long>(registration.GetReference().GetProperty(Constants::SERVICE_ID));
    registration.Unregister();
    return id;
}

/// Which of two spellings is named depends on a hash map.
template <class Call>
std::string withoutCase(Call&& make)
{
    try {
        return make();
    } catch (std::exception const& e) {
        std::string text = nameOf(typeid(e)) + ": " + e.what();
        std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
        return text;
    }
}

} // namespace

Services::Services(Choices& choices, Trace& trace) : m_choices(choices), m_trace(trace)
{
    m_framework.Start();
    auto context = m_framework.GetBundleContext();
    m_names = ServiceNames(nextId(context));
    m_bundles = ostrel::test::installByManifest(context, {"one", "two", "three"});
    for (auto& bundle : m_bundles) {
        bundle.Start();
    }
    m_bundles.push_back(context.GetBundle());
    context.AddFrameworkListener([&trace](FrameworkEvent const& event) {
        std::ostringstream text;
        text << event.GetType() << " '" << event.GetMessage() << "' of " << event.GetBundle().GetSymbolicName();
        if (event.GetThrowable()) {
            try {
                std::rethrow_exception(event.GetThrowable());
            } catch (...) {
                text << ", " << Trace::current();
            }
        }
        // What a listener throws is told while the other listeners, which have no order, are still called.
        trace.unordered(event.GetMessage().find("listener") == std::string::npos ? "" : trace.group(), text.str());
    });
}

Services::~Services()
{
    // The stop takes from the system bundle what it uses, as from any bundle; 3.8.4 waits for the pointers to go.
    for (auto& held : m_held) {
        if (held.user == "system_bundle") {
            m_trace.line("let go " + held.name);
            held.object.reset();
        }
    }
    m_trace.line("the framework stops");
    m_framework.Stop();
    m_framework.WaitForStop(std::chrono::milliseconds::zero());
    for (auto& held : m_held) {
        m_trace.line("let go " + held.name);
        held.object.reset();
    }
    m_kept.clear();
    for (auto& registration : m_registrations) {
        m_trace.call(std::string("afterwards ") + (registration ? "true" : "false"),
                     [&] { registration.Unregister(); });
    }
    // When the last objects go is left open.
    m_trace.end();
}

ServiceProperties Services::randomProperties(bool changed)
{
    ServiceProperties result;
    for (auto left = m_choices.below(4); left > 0; --left) {
        static std::vector<std::string> const keys{"a", "b", "c", "A", "long key", "x.y"};
        auto const& key = m_choices.of(keys);
        result[key] = m_choices.chance(60) ? Any(m_choices.between(0, 3)) : randomValue(m_choices, 1);
    }
    if (m_choices.chance(50)) {
        // In another case a changed ranking goes unnoticed in 3.8.4.
        result[changed || m_choices.chance(85) ? "service.ranking" : "Service.Ranking"] = m_choices.between(-2, 2);
    }
    return result;
}

void Services::added(ServiceRegistrationU registration)
{
    m_references.push_back(registration.GetReference());
    m_registrations.push_back(std::move(registration));
}

void Services::registerOne()
{
    auto by = context();
    auto const properties = randomProperties();
    auto const object = std::make_shared<TracedService>(m_objects++, m_trace);
    auto const kind = m_choices.below(4);
    m_trace.call("register " + std::to_string(object->number()) + " by " + by.GetBundle().GetSymbolicName(), [&] {
        return withoutCase([&] {
            switch (kind) {
            case 0:
                added(by.RegisterService(InterfaceMapConstPtr(MakeInterfaceMap<First>(object)), properties));
                break;
            case 1:
                added(by.RegisterService(InterfaceMapConstPtr(MakeInterfaceMap<Second>(object)), properties));
                break;
            case 2:
                added(by.RegisterService(InterfaceMapConstPtr(MakeInterfaceMap<First, Second>(object)), properties));
                break;
            default:
                added(by.RegisterService(InterfaceMapConstPtr(MakeInterfaceMap<Third, Second, First>(object)),
                                         properties));
            }
            return m_names.nameOf(m_references.back());
        });
    });
}

void Services::registerFactory()
{
    auto by = context();
    auto const properties = randomProperties();
    auto way = static_cast<TracedFactory::Way>(m_choices.chance(50) ? 0 : m_choices.below(TracedFactory::ways));
    auto const name = "factory " + std::to_string(m_factories++);
    bool const prototype = m_choices.chance(40);
    if (prototype && way != TracedFactory::ungetThrows) {
        way = TracedFactory::right; // one that does not deliver leaves 3.8.4 in an undefined state
    }
    auto const factory = std::make_shared<TracedFactory>(name, way, m_trace, m_names);
    std::shared_ptr<ServiceFactory> given = factory;
    if (prototype) {
        given = std::make_shared<TracedPrototypes>(factory);
    }
    m_trace.call(
        name + " (" + std::to_string(way) + (prototype ? " prototype" : "") + ") by " +
            by.GetBundle().GetSymbolicName(),
        [&] {
            return withoutCase([&] {
                added(by.RegisterService(InterfaceMapConstPtr(MakeInterfaceMap<First, Second>(given)), properties));
                if (way != TracedFactory::right && way != TracedFactory::ungetThrows) {
                    m_failing.push_back(m_references.back());
                }
                return m_names.nameOf(m_references.back());
            });
        });
}

void Services::registerWrongly()
{
    auto by = context();
    switch (m_choices.below(5)) {
    case 0:
        m_trace.call("register null", [&] { (void)by.RegisterService<First>(std::shared_ptr<First>()); });
        break;
    case 1:
        m_trace.call("register no map", [&] { (void)by.RegisterService(InterfaceMapConstPtr()); });
        break;
    case 2:
        m_trace.call("register empty map", [&] { (void)by.RegisterService(std::make_shared<InterfaceMap>()); });
        break;
    case 3:
        m_trace.call("register no factory",
                     [&] { (void)by.RegisterService<First>(std::shared_ptr<ServiceFactory>()); });
        break;
    default:
        m_trace.call("with an invalid context", [&] { return list(BundleContext().GetServiceReferences("", "")); });
        m_trace.call("with an invalid registration", [] { ServiceRegistration<First>().Unregister(); });
    }
}

void Services::change()
{
    if (m_registrations.empty()) {
        return;
    }
    auto registration = m_choices.of(m_registrations);
    auto const of = m_choices.below(3);
    if (of == 0) {
        m_trace.call("unregister", [&] { registration.Unregister(); });
        return;
    }
    auto properties = randomProperties(true);
    m_trace.call("set properties", [&] {
        return withoutCase([&] {
            of == 1 ? registration.SetProperties(properties) : registration.SetProperties(std::move(properties));
            return m_names.nameOf(registration.GetReference());
        });
    });
}

void Services::listen()
{
    if (!m_tokens.empty() && m_choices.chance(40)) {
        auto const at = m_choices.below(m_tokens.size());
        m_trace.line("remove listener");
        context().RemoveListener(std::move(m_tokens[at]));
        m_tokens.erase(m_tokens.begin() + static_cast<std::ptrdiff_t>(at));
        return;
    }
    auto by = context();
    auto const filter = randomFilter();
    auto const number = m_listeners++;
    bool const throwing = m_choices.chance(10);
    m_trace.call("listener " + std::to_string(number) + " by " + by.GetBundle().GetSymbolicName() + " '" +
                     m_names.relative(filter) + "'",
                 [&] {
                     m_tokens.push_back(by.AddServiceListener(
                         [this, number, throwing](ServiceEvent const& event) {
                             auto const about = event.GetServiceReference();
                             std::ostringstream what;
                             what << event.GetType() << ' ' << m_names.nameOf(about) << (about ? " true " : " false ")
                                  << names(about.GetUsingBundles());
                             m_trace.unordered(what.str(), "listener " + std::to_string(number) + ": " + what.str());
                             if (throwing) {
                                 throw std::logic_error("listener");
                             }
                         },
                         filter));
                     return std::string(m_tokens.back() ? "token" : "none");
                 });
}

void Services::restart()
{
    auto bundle = m_bundles[m_choices.below(3)];
    // What is held from before counts in 3.8.4 as held after the restart, so it is kept to the end.
    auto const kept = std::stable_partition(
        m_held.begin(), m_held.end(), [&bundle](Held const& held) { return held.user != bundle.GetSymbolicName(); });
    std::move(kept, m_held.end(), std::back_inserter(m_kept));
    m_held.erase(kept, m_held.end());
    m_trace.call("restart " + bundle.GetSymbolicName(), [&] { bundle.Stop(); });
    m_trace.call("started", [&] { bundle.Start(); });
}

void Services::step()
{
    switch (m_choices.below(25)) {
    case 0:
    case 1:
    case 2:
        registerOne();
        break;
    case 3:
    case 4:
        registerFactory();
        break;
    case 5:
        registerWrongly();
        break;
    case 6:
    case 7:
    case 8:
        change();
        break;
    case 9:
    case 10:
    case 11:
        query();
        break;
    case 12:
    case 13:
    case 14:
        get();
        break;
    case 15:
        getObjects();
        break;
    case 16:
    case 17:
        release();
        break;
    case 18:
    case 19:
        look();
        break;
    case 20:
        lookAtBundle();
        break;
    case 21:
        compare();
        break;
    case 22:
    case 23:
        listen();
        break;
    default:
        if (m_choices.chance(40)) {
            restart();
        }
    }
}

void traceServices(Choices& choices, Trace& trace, std::size_t steps)
{
    Services services(choices, trace);
    for (; steps > 0; --steps) {
        services.step();
    }
}

} // namespace contract
