#include "service/ServiceIndex.h"

#include <tuple>
#include <utility>

namespace cppmicroservices::detail::core {

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

/// The first value with a higher key than `after`, or null.
template <class Outer, class Key, class InnerKey>
ServiceIndex::Reference nextAt(Outer const& map, Key const& key, InnerKey const& after)
{
    auto const found = map.find(key);
    if (found == map.end()) {
        return nullptr;
    }
    auto const next = found->second.upper_bound(after);
    return next != found->second.end() ? next->second : nullptr;
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

ServiceIndex::Offered ServiceIndex::offered(Reference const& reference)
{
    return {reference, reference->record->m_properties};
}

ServiceIndex::Offer ServiceIndex::offerOf(std::map<Rank, Reference> const& services)
{
    std::vector<Offered> all;
    all.reserve(services.size());
    for (auto const& entry : services) {
        all.push_back(offered(entry.second));
    }
    return std::make_shared<OfferedServices const>(OfferedServices{std::move(all)});
}

bool ServiceIndex::Rank::operator<(Rank const& other) const
{
    return std::tie(other.ranking, shownId, id) < std::tie(ranking, other.shownId, other.id);
}

ServiceIndex::Reference ServiceIndex::add(std::shared_ptr<ServiceRecord> const& record, Rank const& rank,
                                          Outdated& outdated)
{
    outdate(*record, outdated);
    try {
        return addEverywhere(record, rank);
    } catch (...) {
        remove(*record, rank, outdated);
        throw;
    }
}

ServiceIndex::Reference ServiceIndex::addEverywhere(std::shared_ptr<ServiceRecord> const& record, Rank const& rank)
{
    auto untyped = std::make_shared<ReferenceData const>(ReferenceData{record, std::string()});
    // Ids rise, so a new service nearly always comes last.
    auto const placed = m_all.emplace_hint(m_all.end(), rank.id, Placed{untyped, rank});
    auto& ofOwner = m_byOwner[record->owner().get()];
    ofOwner.emplace_hint(ofOwner.end(), rank.id, untyped);
    if (rank.shownId != rank.id) {
        m_byOwnId[rank.shownId].emplace(rank.id, &placed->second);
    }
    for (auto const& name : record->classes()) {
        m_byClass[name].services.emplace(rank, std::make_shared<ReferenceData const>(ReferenceData{record, name}));
    }
    return untyped;
}

void ServiceIndex::remove(ServiceRecord const& record, Rank const& rank, Outdated& outdated)
{
    outdate(record, outdated);
    for (auto const& name : record.classes()) {
        auto const found = m_byClass.find(name);
        if (found != m_byClass.end()) {
            found->second.services.erase(rank);
            if (found->second.services.empty()) {
                m_byClass.erase(found);
            }
        }
    }
    eraseAt(m_byOwnId, rank.shownId, rank.id);
    eraseAt(m_byOwner, record.owner().get(), rank.id);
    m_all.erase(rank.id);
}

ServiceIndex::Reference ServiceIndex::untyped(ServiceRecord const& record) const
{
    auto const found = m_all.find(record.id());
    return found != m_all.end() ? found->second.reference : nullptr;
}

void ServiceIndex::change(ServiceRecord const& record, Rank const& from, Rank const& to, Outdated& outdated)
{
    auto const placed = m_all.find(from.id);
    if (placed == m_all.end()) {
        return; // no longer registered
    }
    outdate(record, outdated);
    placed->second.rank = to;
    if (from.ranking == to.ranking) {
        return; // the id that is shown never changes
    }
    for (auto const& name : record.classes()) {
        auto& services = m_byClass[name].services;
        auto node = services.extract(from);
        if (!node.empty()) {
            node.key() = to;
            services.insert(std::move(node));
        }
    }
}

void ServiceIndex::outdate(ServiceRecord const& record, Outdated& outdated)
{
    auto const setAside = [&outdated](Offer& offer) {
        if (offer) {
            offer->outdatedBefore = std::move(outdated);
            outdated = std::exchange(offer, nullptr);
        }
    };
    setAside(m_offerOfAll);
    for (auto const& name : record.classes()) {
        auto const found = m_byClass.find(name);
        if (found != m_byClass.end()) {
            setAside(found->second.offer);
        }
    }
}

ServiceIndex::References ServiceIndex::all() const
{
    References result;
    result.reserve(m_all.size());
    for (auto const& entry : m_all) {
        result.push_back(entry.second.reference);
    }
    return result;
}

ServiceIndex::Reference ServiceIndex::first() const
{
    return m_all.empty() ? nullptr : m_all.begin()->second.reference;
}

ServiceIndex::References ServiceIndex::ofClass(std::string const& name) const
{
    auto const found = m_byClass.find(name);
    return found != m_byClass.end() ? valuesOf(found->second.services) : References();
}

ServiceIndex::Offer ServiceIndex::offerOfAll()
{
    if (!m_offerOfAll && !m_all.empty()) {
        std::vector<Offered> all;
        all.reserve(m_all.size());
        for (auto const& entry : m_all) {
            all.push_back(offered(entry.second.reference));
        }
        m_offerOfAll = std::make_shared<OfferedServices const>(OfferedServices{std::move(all)});
    }
    return m_offerOfAll;
}

ServiceIndex::Offer ServiceIndex::offerOfClass(std::string const& name)
{
    auto const found = m_byClass.find(name);
    if (found == m_byClass.end()) {
        return nullptr;
    }
    if (!found->second.offer) {
        found->second.offer = offerOf(found->second.services);
    }
    return found->second.offer;
}

ServiceIndex::Offer ServiceIndex::offerOfClasses(std::vector<std::string> const& names)
{
    if (names.size() == 1) {
        return offerOfClass(names.front());
    }
    std::map<Rank, Reference> merged;
    for (auto const& name : names) {
        auto const found = m_byClass.find(name);
        if (found != m_byClass.end()) {
            merged.insert(found->second.services.begin(), found->second.services.end());
        }
    }
    return offerOf(merged);
}

ServiceIndex::Reference ServiceIndex::bestOf(std::string const& name) const
{
    auto const found = m_byClass.find(name);
    return found != m_byClass.end() ? found->second.services.begin()->second : nullptr;
}

ServiceIndex::Reference ServiceIndex::referenceFor(Placed const& placed, std::string const& className) const
{
    if (className.empty()) {
        return placed.reference;
    }
    auto const services = m_byClass.find(className);
    if (services == m_byClass.end()) {
        return nullptr;
    }
    auto const found = services->second.services.find(placed.rank);
    return found != services->second.services.end() ? found->second : nullptr;
}

std::vector<ServiceIndex::Offered> ServiceIndex::withId(long shownId, std::string const& className) const
{
    // The ids that the framework gives are distinct, but a service may have given itself the id of another one.
    std::map<long, Placed const*> found;
    auto const own = m_byOwnId.find(shownId);
    if (own != m_byOwnId.end()) {
        found = own->second;
    }
    auto const regular = m_all.find(shownId);
    if (regular != m_all.end() && regular->second.rank.shownId == shownId) {
        found.emplace(shownId, &regular->second);
    }
    std::vector<Offered> result;
    for (auto const& entry : found) {
        if (auto reference = referenceFor(*entry.second, className)) {
            result.push_back(offered(reference));
        }
    }
    return result;
}

ServiceIndex::References ServiceIndex::registeredBy(BundleRecord const& bundle) const
{
    return valuesAt(m_byOwner, &bundle);
}

ServiceIndex::Reference ServiceIndex::nextRegisteredBy(BundleRecord const& bundle, long after) const
{
    return nextAt(m_byOwner, &bundle, after);
}

void ServiceIndex::addUse(BundleRecord const& user, std::shared_ptr<ServiceRecord> const& record)
{
    auto reference = std::make_shared<ReferenceData const>(ReferenceData{record, std::string()});
    try {
        m_byUser[&user].emplace(record->id(), std::move(reference));
    } catch (...) {
        removeUse(user, *record); // and with it what was made for it
        throw;
    }
}

void ServiceIndex::removeUse(BundleRecord const& user, ServiceRecord const& record)
{
    eraseAt(m_byUser, &user, record.id());
}

ServiceIndex::References ServiceIndex::usedBy(BundleRecord const& user) const
{
    return valuesAt(m_byUser, &user);
}

ServiceIndex::Reference ServiceIndex::nextUsedBy(BundleRecord const& user, long after) const
{
    return nextAt(m_byUser, &user, after);
}

} // namespace cppmicroservices::detail::core
