#include "contract/traces/RandomValue.h"
#include "contract/traces/Services.h"

#include <cppmicroservices/ServiceObjects.h>

#include <algorithm>
#include <iterator>
#include <sstream>

/// The part of Services that finds services, uses them and looks at them.
namespace contract {

using namespace cppmicroservices;

std::string Services::list(std::vector<ServiceReferenceU> const& references) const
{
    std::string result;
    for (auto const& each : references) {
        result += m_names.nameOf(each) + (each ? " " : "! ");
    }
    return result;
}

std::string Services::names(std::vector<Bundle> bundles) const
{
    std::sort(bundles.begin(), bundles.end());
    std::string result;
    for (auto const& bundle : bundles) {
        result += bundle.GetSymbolicName() + " ";
    }
    return result;
}

ServiceReferenceU Services::reference()
{
    return m_choices.of(m_references);
}

std::string Services::randomClass()
{
    static std::vector<std::string> const classes{
        "contract::First", "my.second", "contract::Third", "", "none", "org.cppmicroservices.factory"};
    return m_choices.of(classes);
}

std::string Services::randomFilter()
{
    static std::vector<std::string> const filters{
        "",
        "",
        "(a=1)",
        "(A=1)",
        "(service.ranking>=1)",
        "(service.ranking=*)",
        "(objectclass=my.second)",
        "(objectClass=contract::*)",
        "(&(objectclass=contract::First)(a=*))",
        "(|(objectclass=contract::Third)(objectclass=my.second))",
        "(!(a=*))",
        "(!(objectclass=contract::First))",
        "(|(objectclass=contract::First)(a=2))",
        "(service.scope=bundle)",
        "(service.scope=p*)",
        "(objectclass=*)",
        "(b<=2)",
        "(&(a=1)(|(b=1)(c=1)))",
        "(a=1",
        " ",
        "a=1",
        "(OBJECTCLASS=none)",
        "(objectclass~=CONTRACT::FIRST)",
        "(&(service.scope=singleton)(!(service.ranking<=0)))",
    };
    if (m_choices.chance(15)) {
        return "(service.id=" + std::to_string(m_names.base() + m_choices.between(0, 30)) + ")";
    }
    return m_choices.of(filters);
}

void Services::query()
{
    auto by = context();
    auto const type = randomClass();
    auto const filter = randomFilter();
    m_trace.call("find '" + type + "' '" + m_names.relative(filter) + "'", [&] {
        auto const all = by.GetServiceReferences(type, filter);
        // With a choice of classes 3.8.4 finds a service once for each class that it has.
        std::vector<ServiceReferenceU> once;
        for (auto const& each : all) {
            if (filter.find("(|(objectclass") != 0 || std::find(once.begin(), once.end(), each) == once.end()) {
                once.push_back(each);
            }
        }
        return list(once);
    });
    if (m_choices.chance(40)) {
        m_trace.call("best " + type, [&] { return list({by.GetServiceReference(type)}); });
    }
    if (m_choices.chance(20)) {
        m_trace.call("typed", [&] {
            std::string result;
            for (auto const& each : by.GetServiceReferences<Second>(filter)) {
                result += m_names.nameOf(each) + " " + each.GetInterfaceId() + " ";
            }
            return result;
        });
    }
}

void Services::get()
{
    auto by = context();
    auto const from = reference();
    auto const name = "held " + std::to_string(m_held.size());
    auto const way = m_choices.below(3);
    auto const user = by.GetBundle().GetSymbolicName();
    auto const what =
        name + ": get " + (from ? m_names.nameOf(from) : "invalid") + " by " + by.GetBundle().GetSymbolicName();
    m_trace.call(what, [&]() -> std::string {
        if (way == 0) {
            auto const map = by.GetService(from);
            if (!map) {
                return "null";
            }
            m_held.push_back({name, map, user});
            std::vector<std::string> keys;
            for (auto const& entry : *map) {
                keys.push_back(entry.first);
            }
            std::sort(keys.begin(), keys.end());
            std::string result = "map";
            for (auto const& key : keys) {
                result += " " + key;
            }
            return result;
        }
        if (way == 1) {
            auto const object = by.GetService(ServiceReference<First>(from));
            if (object) {
                m_held.push_back({name, object, user});
            }
            return object ? std::to_string(object->number()) + " " + std::to_string(object.use_count()) : "null";
        }
        auto const object = by.GetService(ServiceReference<Second>(from));
        if (object) {
            m_held.push_back({name, object, user});
        }
        return object ? std::to_string(object->number()) + " " + std::to_string(object.use_count()) : "null";
    });
}

void Services::getObjects()
{
    auto by = context();
    auto const from = ServiceReference<First>(reference());
    if (std::find(m_failing.begin(), m_failing.end(), from) != m_failing.end()) {
        return;
    }
    m_trace.call("objects of " + (from ? m_names.nameOf(from) : "invalid"), [&]() -> std::string {
        auto const objects = by.GetServiceObjects(from);
        auto const one = objects.GetService();
        auto const two = objects.GetService();
        return (one ? std::to_string(one->number()) : "null") + " " + (two ? std::to_string(two->number()) : "null") +
               " " + m_names.nameOf(objects.GetServiceReference()) + " " + names(from.GetUsingBundles());
    });
}

void Services::release()
{
    if (m_held.empty()) {
        return;
    }
    auto const at = m_choices.below(m_held.size());
    auto const held = m_held[at];
    m_held.erase(m_held.begin() + static_cast<std::ptrdiff_t>(at));
    m_trace.line("let go " + held.name);
}

void Services::look()
{
    auto const from = reference();
    if (from == ServiceReferenceU()) {
        m_trace.line("invalid: " + from.GetInterfaceId() + std::to_string(from.IsConvertibleTo("contract::First")));
        return;
    }
    static std::vector<std::string> const asked{"a",    "A", "b", "service.ranking", "objectclass", "SERVICE.SCOPE",
                                                "none", ""};
    auto const& key = m_choices.of(asked);
    m_trace.call(m_names.nameOf(from) + "[" + key + "]", [&] { return described(from.GetProperty(key)); });
    switch (m_choices.below(4)) {
    case 0: {
        std::vector<std::string> keys{"x"};
        from.GetPropertyKeys(keys);
        bool const same = keys == from.GetPropertyKeys();
        std::sort(keys.begin(), keys.end());
        std::string result;
        for (auto const& each : keys) {
            result += each + " ";
        }
        m_trace.line("keys " + result + std::to_string(same));
        break;
    }
    case 1: {
        bool complete = true;
        for (auto const& each : from.GetPropertyKeys()) {
            complete = complete && !holdsEmpty(from.GetProperty(each));
        }
        if (complete) {
            std::ostringstream text;
            text << from;
            // The properties stand in the order of a hash map.
            m_trace.line(text.str().substr(0, text.str().find('(')) + std::to_string(text.str().size() > 60));
        }
        break;
    }
    case 2:
        m_trace.line("users " + names(from.GetUsingBundles()));
        break;
    default: {
        auto const bundle = from.GetBundle();
        m_trace.line("of " + (bundle ? bundle.GetSymbolicName() : "none") + " " + from.GetInterfaceId() +
                     std::to_string(from.IsConvertibleTo("contract::First")) +
                     std::to_string(from.IsConvertibleTo("my.second")) + std::to_string(from.IsConvertibleTo("")) +
                     std::to_string(static_cast<bool>(ServiceReference<Third>(from))));
    }
    }
}

void Services::lookAtBundle()
{
    auto const& bundle = m_choices.of(m_bundles);
    m_trace.call(bundle.GetSymbolicName() + " registered", [&] { return list(bundle.GetRegisteredServices()); });
    m_trace.call(bundle.GetSymbolicName() + " uses", [&] { return list(bundle.GetServicesInUse()); });
}

void Services::compare()
{
    auto const left = reference();
    auto const right = reference();
    // Stale ones have no order.
    if (!left || !right) {
        m_trace.line("equal " + std::to_string(left == right) +
                     std::to_string(ServiceReferenceU() == ServiceReferenceU()));
        return;
    }
    m_trace.line("compare " + std::to_string(left == right) + std::to_string(left < right) +
                 std::to_string(right < left) + std::to_string(left < ServiceReferenceU()) +
                 std::to_string(ServiceReferenceU() < left) +
                 std::to_string((std::hash<ServiceReferenceU>()(left) == std::hash<ServiceReferenceU>()(right))));
    std::vector<ServiceReferenceU> valid;
    std::copy_if(m_references.begin(), m_references.end(), std::back_inserter(valid),
                 [](auto const& each) { return bool(each); });
    std::sort(valid.begin(), valid.end());
    m_trace.line("sorted " + list(valid));
}

} // namespace contract
