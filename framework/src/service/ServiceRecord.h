#pragma once

#include "framework/ForeignCodeLock.h"
#include "ldap/PropertyTable.h"

#include "cppmicroservices/AnyMap.h"
#include "cppmicroservices/ServiceInterface.h"

#include <cstddef>
#include <memory>
#include <string>
#include <thread>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace cppmicroservices::detail::core {

class BundleRecord;
class ServiceIndex;
class ServiceRegistry;

/// One object of a service in the hands of one bundle, from its first use to its last.
struct ServiceUse {
    explicit ServiceUse(std::shared_ptr<BundleRecord> theUser) : user(std::move(theUser)) {}

    std::shared_ptr<BundleRecord> const user;
    ForeignCodeLock making;      ///< held by the thread that asks the service factory for `object`
    std::size_t count = 0;       ///< 0 only while, or after, the factory did not deliver
    InterfaceMapConstPtr object; ///< what the factory made; null for a service without one
    bool over = false;           ///< a later use by the same bundle is another ServiceUse
};

/// All that one bundle uses of one service.
struct BundleUses {
    bool empty() const { return !shared && own.empty(); }

    std::shared_ptr<ServiceUse> shared;                  ///< what each GetService() of the bundle gives; may be null
    std::unordered_set<std::shared_ptr<ServiceUse>> own; ///< one for each object that a prototype factory made
};

/// A registered service as the framework knows it. Outlives the framework where a reference or registration does.
///
/// The members without "const" are guarded by the registry's lock and touched by the registry and its index only.
class ServiceRecord : public std::enable_shared_from_this<ServiceRecord> {
public:
    enum class State { registered, unregistering, unregistered };

    using Properties = std::shared_ptr<detail::ldap::PropertyTable const>;

    /// @param classes the keys of the interface map, also the one that marks a factory
    ServiceRecord(std::shared_ptr<ServiceRegistry> registry, std::shared_ptr<BundleRecord> owner, long id,
                  std::vector<std::string> classes);

    long id() const { return m_id; }
    std::shared_ptr<BundleRecord> const& owner() const { return m_owner; }
    ServiceRegistry& registry() const { return *m_registry; }
    std::vector<std::string> const& classes() const { return m_classes; }
    bool hasClass(std::string const& name) const;

private:
    friend class ServiceIndex;
    friend class ServiceRegistry;

    std::shared_ptr<ServiceRegistry> const m_registry;
    std::shared_ptr<BundleRecord> const m_owner;
    long const m_id;
    std::vector<std::string> const m_classes;

    State m_state = State::registered;
    std::thread::id m_unregisteringBy; // while that is its state
    InterfaceMapConstPtr m_object;     // null once unregistered, and where there is a factory
    std::shared_ptr<ServiceFactory> m_factory;
    Properties m_properties; // never null, replaced as a whole
    int m_ranking = 0;
    long m_shownId = 0;                                         // the property "service.id"
    std::unordered_map<BundleRecord const*, BundleUses> m_uses; // none of them is empty
};

/// What a reference handle points to; shared by all references that one query for an interface gives.
struct ReferenceData {
    std::shared_ptr<ServiceRecord> record;
    std::string interfaceId;
};

} // namespace cppmicroservices::detail::core
