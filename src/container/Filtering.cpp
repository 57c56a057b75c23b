#include "container/MicroServicesContainer.h"
#include "container/Record.h"
#include "container/ServiceWalk.h"
#include "platform/InstallBundles.h"

#include <cppmicroservices/AnyMap.h>

#include <algorithm>
#include <cxxabi.h>
#include <typeinfo>

namespace ostrel::us_container {

using cppmicroservices::Any;
using cppmicroservices::AnyMap;
using cppmicroservices::Bundle;
using cppmicroservices::ServiceReferenceBase;

namespace {

bool anyRequired(const FilterMap& filterMap)
{
    return std::any_of(filterMap.begin(), filterMap.end(), [](const auto& entry) { return entry.second.second; });
}

bool valuesMatch(const AnyMap& alternative, const FilterMap& filterMap)
{
    for (const auto& [attribute, value] : alternative) {
        // The text is rendered even for attributes that the host does not name: one that cannot be rendered makes the
        // whole declaration one that cannot be evaluated.
        const std::string text = value.ToString();
        const auto expected = filterMap.find(attribute);
        if (expected != filterMap.end() && text != expected->second.first) {
            return false;
        }
    }
    return true;
}

/// Whether the alternative names the attribute byte for byte; manifests are maps that find keys in any case.
bool names(const AnyMap& alternative, const std::string& attribute)
{
    const auto entry = alternative.find(attribute);
    return entry != alternative.end() && entry->first == attribute;
}

// KEPT ON PURPOSE: naming any one of several required attributes is enough.
bool namesRequired(const AnyMap& alternative, const FilterMap& filterMap)
{
    bool required = false;
    for (const auto& [attribute, condition] : filterMap) {
        if (condition.second) {
            if (names(alternative, attribute)) {
                return true;
            }
            required = true;
        }
    }
    return !required;
}

bool matches(const AnyMap& alternative, const FilterMap& filterMap)
{
    return valuesMatch(alternative, filterMap) && namesRequired(alternative, filterMap);
}

bool checkAlternatives(const Any& filters, const FilterMap& filterMap, const std::string& name)
{
    OSTREL_RECORD(messages::filters, name, filters.ToJSON());
    for (const Any& element : cppmicroservices::ref_any_cast<std::vector<Any>>(filters)) {
        if (element.Type() != typeid(AnyMap)) {
            OSTREL_RECORD(messages::invalidFilter, name);
            continue;
        }
        const auto alternative = cppmicroservices::any_cast<AnyMap>(element);
        if (matches(alternative, filterMap)) {
            OSTREL_RECORD(messages::filterMatches, name);
            return true;
        }
    }
    OSTREL_RECORD(messages::filterDoesNotMatch, name);
    return false;
}

bool checkWithoutAlternatives(const Any& filters, const FilterMap& filterMap, const std::string& name)
{
    if (!filters.Empty()) {
        OSTREL_RECORD(messages::unexpectedFilters, name, filters.ToJSON());
    }
    if (anyRequired(filterMap)) {
        OSTREL_RECORD(messages::emptyFilterLacksRequired, name);
        return false;
    }
    OSTREL_RECORD(messages::emptyFilterMatches, name);
    return true;
}

} // namespace

// UBSan: the reference to the unwinding of a thread that ends is null in libstdc++.
__attribute__((no_sanitize("null"))) bool checkFilter(const Any& filters, const FilterMap& filterMap,
                                                      const std::string& name)
{
    try {
        if (filters.Type() == typeid(std::vector<Any>)) {
            return checkAlternatives(filters, filterMap, name);
        }
        return checkWithoutAlternatives(filters, filterMap, name);
    } catch (abi::__forced_unwind&) {
        throw; // a value that is rendered ends the thread; whoever stops its unwinding ends the process
    } catch (...) {
        // KEPT ON PURPOSE: a declaration that cannot be evaluated admits; and "from bundle" is said of services too.
        OSTREL_RECORD(messages::filterError, name);
        return true;
    }
}

void MicroServicesContainer::startBundles(const FilterMap& filterMap)
{
    const std::lock_guard lock{m_mutex};
    for (Bundle& bundle : ostrel::platform::installBundles(m_context, m_bundlesPath)) {
        const AnyMap& headers = bundle.GetHeaders();
        const std::string name = headers.AtCompoundKey("zq.component.name").ToString();
        const Any filters = headers.AtCompoundKey("zq.ostrelFilters", Any{});
        if (!checkFilter(filters, filterMap, name)) {
            OSTREL_RECORD(messages::skippingBundle, name);
            continue;
        }
        OSTREL_RECORD(messages::startingBundle, name);
        bundle.Start();
        m_startedBundles[name] = bundle.GetLocation();
    }
}

void MicroServicesContainer::loadServices(const FilterMap& filterMap)
{
    const std::lock_guard lock{m_mutex};
    const auto isAdmitted = [&filterMap](const ServiceReferenceBase& reference) {
        const Any property = reference.GetProperty("zq");
        if (property.Type() != typeid(AnyMap)) {
            return true;
        }
        const auto declarations = cppmicroservices::any_cast<AnyMap>(property);
        const Any filters = declarations.AtCompoundKey("ostrelStartupLoadFilters", Any{});
        if (checkFilter(filters, filterMap, serviceIdText(reference))) {
            return true;
        }
        OSTREL_RECORD(messages::skippingService, serviceIdText(reference));
        return false;
    };
    loadServices(serviceNamesOf(m_context, m_startedBundles, isAdmitted));
}

} // namespace ostrel::us_container
