#pragma once

#include "service/ServiceRecord.h"

#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace cppmicroservices::core {

/// The registered services of one framework run, by everything that they are looked up by. No lock of its own.
///
/// Each change is O(log n); each look-up costs as much as its result is long.
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

    void add(std::shared_ptr<ServiceRecord> const& record, Rank const& rank);
    void remove(ServiceRecord const& record, Rank const& rank);
    void move(ServiceRecord const& record, Rank const& from, Rank const& to);

    /// In order of registration.
    References all() const;
    Reference first() const;

    /// Best first.
    References ofClass(std::string const& name) const;

    /// The services that are of any of the classes, each once, best first.
    References ofClasses(std::vector<std::string> const& names) const;
    Reference bestOf(std::string const& name) const;
    bool hasClass(std::string const& name) const { return m_byClass.count(name) != 0; }

    /// The services with that "service.id", as references for the class ("" for any), in order of registration.
    References withId(long shownId, std::string const& className) const;

    /// In order of registration.
    References registeredBy(BundleRecord const& bundle) const;

    void addUse(BundleRecord const& user, std::shared_ptr<ServiceRecord> const& record);
    void removeUse(BundleRecord const& user, ServiceRecord const& record);

    /// In order of registration.
    References usedBy(BundleRecord const& user) const;

private:
    using ById = std::map<long, Reference>;

    ById m_all;
    std::unordered_map<long, std::map<long, Rank>> m_byShownId;
    std::unordered_map<std::string, std::map<Rank, Reference>> m_byClass;
    std::unordered_map<BundleRecord const*, ById> m_byOwner;
    std::unordered_map<BundleRecord const*, ById> m_byUser;
};

} // namespace cppmicroservices::core
