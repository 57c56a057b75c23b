#include "container/MicroServicesContainer.h"
#include "container/Record.h"
#include "container/ServiceWalk.h"
#include "filtering/Decision.h"
#include "platform/InstallBundles.h"

#include <cppmicroservices/AnyMap.h>

#include <cxxabi.h>
#include <typeinfo>

namespace ostrel::us_container {

using cppmicroservices::Any;
using cppmicroservices::AnyMap;
using cppmicroservices::Bundle;
using cppmicroservices::ServiceReferenceBase;

namespace {

/// Writes a record of each step.
struct Recorder {
    const std::string& name;

    void isList(const Any& filters) const { OSTREL_RECORD(messages::filters, name, filters.ToJSON()); }

    void isJudged(const filtering::Judgement& judgement) const
    {
        if (judgement.verdict == filtering::Verdict::notAMap) {
            OSTREL_RECORD(messages::invalidFilter, name);
        } else if (judgement.verdict == filtering::Verdict::matches) {
            OSTREL_RECORD(messages::filterMatches, name);
        }
    }

    void noneMatches() const { OSTREL_RECORD(messages::filterDoesNotMatch, name); }

    void isNoList(const Any& filters) const
    {
        if (!filters.Empty()) {
            OSTREL_RECORD(messages::unexpectedFilters, name, filters.ToJSON());
        }
    }

    void isDecidedWithout(bool admitted) const
    {
        if (admitted) {
            OSTREL_RECORD(messages::emptyFilterMatches, name);
        } else {
            OSTREL_RECORD(messages::emptyFilterLacksRequired, name);
        }
    }
};

} // namespace

// UBSan: the reference to the unwinding of a thread that ends is null in libstdc++.
__attribute__((no_sanitize("null"))) bool checkFilter(const Any& filters, const FilterMap& filterMap,
                                                      const std::string& name)
{
    try {
        return filtering::decide(filters, filterMap, Recorder{name});
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
