#include "service/ServiceIndex.h"

#include <tuple>
#include <utility>

namespace cppmicroservices::core {

namespace {

template <class Map>
ServiceIndex::References valuesOf(Map const& map)
{
    ServiceIndex::References result;
    result.reserve(map.size());
    for (auto const& entry : map) {
        result.push_back(entry.second);
    }
    return result;
}

template <class Outer, class Key>
ServiceIndex::References valuesAt(Outer const& map, Key const& key)
{
    auto const found = map.find(key);
    return found != map.end() ? valuesOf(found->second) : ServiceIndex::References();
}

/// Takes one entry out of a map of maps, and the inner map with its last entry.
template <class Outer, class Key, class InnerKey>
void eraseAt(Outer& map, Key const& key, InnerKey const& innerKey)
{
    auto const found = map.find(key);
    if (found != map.end()) {
        found->second.erase(innerKey);
        if (found->second.empty()) {
            map.erase(found);
        }
    }
}

} // namespace

bool ServiceIndex::Rank::operator<(Rank const& other) const
{
    return std::tie(other.ranking, shownId, id) < std::tie(ranking, other.shownId, other.id);
}

void ServiceIndex::add(std::shared_ptr<ServiceRecord> const& record, Rank const& rank)
{
    auto const untyped = std::make_shared<ReferenceData const>(ReferenceData{record, std::string()});
    m_all.emplace(rank.id, untyped);
    m_byOwner[record->owner().get()].emplace(rank.id, untyped);
    m_byShownId[rank.shownId].emplace(rank.id, rank);
    for (auto const& name : record->classes()) {
        m_byClass[name].emplace(rank, std::make_shared<ReferenceData const>(ReferenceData{record, name}));
    }
}

void ServiceIndex::remove(ServiceRecord const& record, Rank const& rank)
{
    for (auto const& name : record.classes()) {
        eraseAt(m_byClass, name, rank);
    }
    eraseAt(m_byShownId, rank.shownId, rank.id);
    eraseAt(m_byOwner, record.owner().get(), rank.id);
    m_all.erase(rank.id);
}

void ServiceIndex::move(ServiceRecord const& record, Rank const& from, Rank const& to)
{
    auto const ids = m_byShownId.find(from.shownId);
    if (ids == m_byShownId.end() || ids->second.count(from.id) == 0) {
        return; // no longer registered
    }
    ids->second[from.id] = to;
    for (auto const& name : record.classes()) {
        auto& services = m_byClass[name];
        auto node = services.extract(from);
        if (!node.empty()) {
            node.key() = to;
            services.insert(std::move(node));
        }
    }
}

ServiceIndex::References ServiceIndex::all() const
{
    return valuesOf(m_all);
}

ServiceIndex::Reference ServiceIndex::first() const
{
    return m_all.empty() ? nullptr : m_all.begin()->second;
}

ServiceIndex::References ServiceIndex::ofClass(std::string const& name) const
{
    return valuesAt(m_byClass, name);
}

ServiceIndex::References ServiceIndex::ofClasses(std::vector<std::string> const& names) const
{
    if (names.size() == 1) {
        return ofClass(names.front());
    }
    std::map<Rank, Reference> merged;
    for (auto const& name : names) {
        auto const found = m_byClass.find(name);
        if (found != m_byClass.end()) {
            merged.insert(found->second.begin(), found->second.end());
        }
    }
    return valuesOf(merged);
}

ServiceIndex::Reference ServiceIndex::bestOf(std::string const& name) const
{
    auto const found = m_byClass.find(name);
    return found != m_byClass.end() ? found->second.begin()->second : nullptr;
}

ServiceIndex::References ServiceIndex::withId(long shownId, std::string const& className) const
{
    References result;
    auto const ids = m_byShownId.find(shownId);
    if (ids == m_byShownId.end()) {
        return result;
    }
    auto const services = className.empty() ? m_byClass.end() : m_byClass.find(className);
    for (auto const& [id, rank] : ids->second) {
        if (className.empty()) {
            result.push_back(m_all.at(id));
        } else if (services != m_byClass.end()) {
            auto const found = services->second.find(rank);
            if (found != services->second.end()) {
                result.push_back(found->second);
            }
        }
    }
    return result;
}

ServiceIndex::References ServiceIndex::registeredBy(BundleRecord const& bundle) const
{
    return valuesAt(m_byOwner, &bundle);
}

void ServiceIndex::addUse(BundleRecord const& user, std::shared_ptr<ServiceRecord> const& record)
{
    m_byUser[&user].emplace(record->id(), std::make_shared<ReferenceData const>(ReferenceData{record, std::string()}));
}

void ServiceIndex::removeUse(BundleRecord const& user, ServiceRecord const& record)
{
    eraseAt(m_byUser, &user, record.id());
}

ServiceIndex::References ServiceIndex::usedBy(BundleRecord const& user) const
{
    return valuesAt(m_byUser, &user);
}

} // namespace cppmicroservices::core
