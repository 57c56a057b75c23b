#include "event/ServiceListenerIndex.h"

#include "ldap/FilterAccess.h"

#include <algorithm>
#include <utility>

namespace cppmicroservices::detail::core {

namespace {

/// The one class that the filter demands, or null.
std::string const* onlyClass(detail::ldap::Requirements const& required)
{
    return required.classes && required.classes->size() == 1 ? &required.classes->front() : nullptr;
}

template <class Lists, class Key>
void removeFrom(Lists& lists, Key const& key, ListenerTokenId id)
{
    auto const found = lists.find(key);
    if (found != lists.end()) {
        found->second.remove(id);
        if (found->second.isEmpty()) {
            lists.erase(found);
        }
    }
}

} // namespace

void ServiceListenerCandidates::add(List::Snapshot snapshot)
{
    if (snapshot) {
        m_runs.push_back(std::move(snapshot));
    }
}

void ServiceListenerIndex::add(Entry const& listener)
{
    auto const& required = detail::ldap::FilterAccess::requirements(listener->filter);
    if (required.serviceId) {
        m_byId[*required.serviceId].add(listener);
    } else if (auto const* const name = onlyClass(required)) {
        m_byClass[*name].add(listener);
    } else {
        m_others.add(listener);
    }
}

void ServiceListenerIndex::remove(FilteredListener const& listener)
{
    auto const& required = detail::ldap::FilterAccess::requirements(listener.filter);
    if (required.serviceId) {
        removeFrom(m_byId, *required.serviceId, listener.id);
    } else if (auto const* const name = onlyClass(required)) {
        removeFrom(m_byClass, *name, listener.id);
    } else {
        m_others.remove(listener.id);
    }
}

ServiceListenerCandidates ServiceListenerIndex::candidates(long shownId, std::vector<std::string> const& classes)
{
    ServiceListenerCandidates result;
    result.add(m_others.snapshot());
    auto const ofId = m_byId.find(shownId);
    if (ofId != m_byId.end()) {
        result.add(ofId->second.snapshot());
    }
    for (auto name = classes.begin(); name != classes.end(); ++name) {
        bool const isNew = std::find(classes.begin(), name, *name) == name; // a caller may have named one twice
        auto const ofClass = isNew ? m_byClass.find(*name) : m_byClass.end();
        if (ofClass != m_byClass.end()) {
            result.add(ofClass->second.snapshot());
        }
    }
    return result;
}

} // namespace cppmicroservices::detail::core
