#pragma once

#include "service/ServiceRecord.h"

#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace cppmicroservices::detail::core {

/// The registered services of one framework run, by everything that they are looked up by. No lock of its own.
///
/// Each change is O(log n); each look-up costs as much as its result is long.
///
/// Who matches a filter against many services takes an offer of them with their properties, and needs no lock then. An
/// offer is kept until one of its services changes, so that further queries copy nothing.
class ServiceIndex {
public:
    using Reference = std::shared_ptr<ReferenceData const>;
    using References = std::vector<Reference>;

    /// The place of a service in its classes: best first.
    struct Rank {
        int ranking = 0;
        long shownId = 0;
        long id = 0;

        bool operator<(Rank const& other) const;
    };

    struct Offered {
        Reference reference;
        ServiceRecord::Properties properties;
    };

    struct OfferedServices;
    using Offer = std::shared_ptr<OfferedServices const>;

    struct OfferedServices {
        std::vector<Offered> services;
        mutable Offer outdatedBefore = nullptr; ///< guarded by the lock of the index
    };

    /// Offers that a change made useless: the last of them, which holds the others, so that none needs memory to be put
    /// aside. They may be the last owners of services and properties, whose destructors are foreign code, so they have
    /// to outlive the lock.
    using Outdated = Offer;

    /// @return a reference to the service for no class
    /// @throws std::bad_alloc, and nothing is changed
    Reference add(std::shared_ptr<ServiceRecord> const& record, Rank const& rank, Outdated& outdated);

    // These three need no memory.

    void remove(ServiceRecord const& record, Rank const& rank, Outdated& outdated);

    /// The properties of the service were replaced, and its rank with them.
    void change(ServiceRecord const& record, Rank const& from, Rank const& to, Outdated& outdated);

    /// What add() returned; null when the service is not here.
    Reference untyped(ServiceRecord const& record) const;

    /// In order of registration.
    References all() const;
    Reference first() const;

    /// Best first.
    References ofClass(std::string const& name) const;

    /// As all() and ofClass(). Null for none.
    Offer offerOfAll();
    Offer offerOfClass(std::string const& name);

    /// The services that are of any of the classes, each once, best first.
    Offer offerOfClasses(std::vector<std::string> const& names);
    Reference bestOf(std::string const& name) const;
    bool hasClass(std::string const& name) const { return m_byClass.count(name) != 0; }

    /// The services with that "service.id", as references for the class ("" for any), in order of registration.
    std::vector<Offered> withId(long shownId, std::string const& className) const;

    /// In order of registration.
    References registeredBy(BundleRecord const& bundle) const;

    /// The first of them with a higher id, or null. Needs no memory.
    Reference nextRegisteredBy(BundleRecord const& bundle, long after) const;

    /// @throws std::bad_alloc, and nothing is changed
    void addUse(BundleRecord const& user, std::shared_ptr<ServiceRecord> const& record);
    void removeUse(BundleRecord const& user, ServiceRecord const& record);

    /// In order of registration.
    References usedBy(BundleRecord const& user) const;

    /// The first of them with a higher id, or null. Needs no memory.
    Reference nextUsedBy(BundleRecord const& user, long after) const;

private:
    using ById = std::map<long, Reference>;

    struct Placed {
        Reference reference;
        Rank rank;
    };

    struct Class {
        std::map<Rank, Reference> services; // never empty
        Offer offer;                        // null until someone asks
    };

    /// The service as a reference for the class, or null when it is not of the class.
    Reference referenceFor(Placed const& placed, std::string const& className) const;
    static Offered offered(Reference const& reference);
    static Offer offerOf(std::map<Rank, Reference> const& services);
    Reference addEverywhere(std::shared_ptr<ServiceRecord> const& record, Rank const& rank);
    void outdate(ServiceRecord const& record, Outdated& outdated);

    std::map<long, Placed> m_all;
    Offer m_offerOfAll;
    std::unordered_map<long, std::map<long, Placed const*>> m_byOwnId; // services that gave themselves a "service.id"
    std::unordered_map<std::string, Class> m_byClass;
    std::unordered_map<BundleRecord const*, ById> m_byOwner;
    std::unordered_map<BundleRecord const*, ById> m_byUser;
};

} // namespace cppmicroservices::detail::core
