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

void ServiceListenerIndex::add(Entry const& listener)
{
    auto const& required = detail::ldap::FilterAccess::requirements(listener->filter);
    try {
        if (required.serviceId) {
            m_byId[*required.serviceId].add(listener);
        } else if (auto const* const name = onlyClass(required)) {
            m_byClass[*name].add(listener);
        } else {
            m_others.add(listener);
        }
    } catch (...) {
        remove(*listener); // and with it a list that was made for it
        throw;
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

template <class Visit>
void ServiceListenerIndex::forEachList(long shownId, std::vector<std::string> const& classes, Visit&& visit)
{
    visit(m_others);
    auto const ofId = m_byId.find(shownId);
    if (ofId != m_byId.end()) {
        visit(ofId->second);
    }
    for (auto name = classes.begin(); name != classes.end(); ++name) {
        bool const isNew = std::find(classes.begin(), name, *name) == name; // a caller may have named one twice
        auto const ofClass = isNew ? m_byClass.find(*name) : m_byClass.end();
        if (ofClass != m_byClass.end()) {
            visit(ofClass->second);
        }
    }
}

std::optional<ServiceAudience> ServiceListenerIndex::audience(long shownId, std::vector<std::string> const& classes)
{
    ServiceAudience result;
    forEachList(shownId, classes, [&result](List& list) { result.add(list.snapshot()); });
    return result.isWhole() ? std::optional<ServiceAudience>(std::move(result)) : std::nullopt;
}

ServiceListenerIndex::Entry ServiceListenerIndex::next(long shownId, std::vector<std::string> const& classes,
                                                       ListenerTokenId below)
{
    Entry newest;
    forEachList(shownId, classes, [&newest, below](List const& list) {
        auto found = list.next(below);
        if (found && (!newest || found->id > newest->id)) {
            newest = std::move(found);
        }
    });
    return newest;
}

} // namespace cppmicroservices::detail::core
