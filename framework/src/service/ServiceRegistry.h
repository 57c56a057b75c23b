#pragma once

#include "service/FilterCache.h"
#include "service/ServiceIndex.h"
#include "service/ServiceRecord.h"

#include "cppmicroservices/ServiceProperties.h"

#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace cppmicroservices {

class BundleContextPrivate;

namespace detail::core {

class Events;

/// The services of one run of a framework: registering, finding and using them.
///
/// All functions may be called from any thread. The one lock is held for bookkeeping only, never while a service
/// factory or a destructor of a service or of a property value runs, nor while an event is published.
class ServiceRegistry : public std::enable_shared_from_this<ServiceRegistry> {
public:
    using Reference = ServiceIndex::Reference;
    using References = ServiceIndex::References;

    explicit ServiceRegistry(std::shared_ptr<Events> events);

    /// Registers a service for the context's bundle. See BundleContext::RegisterService() for what it throws.
    std::shared_ptr<ServiceRecord> add(BundleContextPrivate const& context, InterfaceMapConstPtr const& object,
                                       ServiceProperties const& properties);

    /// @throws std::logic_error "Service is unregistered"
    void changeProperties(std::shared_ptr<ServiceRecord> const& record, ServiceProperties const& properties);

    /// @throws std::logic_error "Service is unregistered"
    void remove(std::shared_ptr<ServiceRecord> const& record);

    /// See BundleContext::GetServiceReferences().
    References find(std::string const& className, std::string const& filter) const;

    /// The best service of the class, the first one registered for "", or null.
    Reference best(std::string const& className) const;

    References registeredBy(BundleRecord const& bundle) const;
    References usedBy(BundleRecord const& bundle) const;

    /// The object as the interface, or as any for "". Null when a factory does not deliver.
    ///
    /// @throws std::invalid_argument when the service is no longer registered
    std::shared_ptr<void> object(Reference const& reference, BundleContextPrivate const& context);

    /// The same, with all interfaces.
    InterfaceMapConstPtr interfaces(Reference const& reference, BundleContextPrivate const& context);

    /// As object() and interfaces(), but another object each time when the service has a prototype factory, and null
    /// when it is no longer registered.
    std::shared_ptr<void> ownObject(Reference const& reference, BundleContextPrivate const& context);
    InterfaceMapConstPtr ownInterfaces(Reference const& reference, BundleContextPrivate const& context);

    /// Ends one use. Called by the deleter of what the functions above return.
    void release(std::shared_ptr<ServiceRecord> const& record, std::shared_ptr<ServiceUse> const& use) noexcept;

    /// The bundle of the context is stopping: unregisters its services, in order of registration, and refuses further
    /// ones.
    void endRegistrations(BundleContextPrivate& context) noexcept;

    /// Then: ends all of its uses, and refuses further ones.
    void endUses(BundleContextPrivate& context) noexcept;

    /// The run is over: forgets all services, which stay registered as far as their handles can tell.
    void close() noexcept;

    // What the handles ask.
    bool isRegistered(ServiceRecord const& record) const;
    ServiceRecord::Properties properties(ServiceRecord const& record) const;
    ServiceIndex::Rank rank(ServiceRecord const& record) const;
    std::vector<std::shared_ptr<BundleRecord>> users(ServiceRecord const& record) const;

    /// @throws std::logic_error "Service is unregistered"
    void requireRegistered(ServiceRecord const& record) const;

private:
    using Use = std::shared_ptr<ServiceUse>;

    /// A use that has been counted, and the interfaces that it gives.
    struct Granted {
        Use use;
        InterfaceMapConstPtr interfaces;
        bool registered = true; ///< if not, there is nothing to grant
    };

    /// Why an object is given back to its factory.
    enum class Reason { released, unregistered };

    /// False when the service is no longer registered. Needs no memory unless the framework has ended.
    bool tryRemove(std::shared_ptr<ServiceRecord> const& record);

    /// For no class; the lock is held. Needs no memory for a service that can be found.
    Reference untypedReference(std::shared_ptr<ServiceRecord> const& record) const;

    Granted acquire(std::shared_ptr<ServiceRecord> const& record, BundleContextPrivate const& context);
    Granted acquireOwn(std::shared_ptr<ServiceRecord> const& record, BundleContextPrivate const& context);
    Granted makeWithFactory(std::shared_ptr<ServiceRecord> const& record, Use const& use);
    Granted makeOwn(ServiceFactory& factory, std::shared_ptr<ServiceRecord> const& record,
                    std::shared_ptr<BundleRecord> const& user);
    /// Notes the use as one that the bundle shares, or as its own; the lock is held.
    ///
    /// @throws std::bad_alloc, and nothing is changed
    void addShared(std::shared_ptr<ServiceRecord> const& record, Use const& use);
    void addOwn(std::shared_ptr<ServiceRecord> const& record, Use const& use);
    template <class Add>
    void addUse(std::shared_ptr<ServiceRecord> const& record, Use const& use, Add&& add);
    InterfaceMapConstPtr ask(ServiceFactory& factory, std::shared_ptr<ServiceRecord> const& record,
                             std::shared_ptr<BundleRecord> const& user);
    /// Takes out the use that all of the bundle's pointers share; null when there is none. The lock is held.
    Use endSharedUse(ServiceRecord& record, BundleRecord const& user);
    void giveBack(ServiceFactory& factory, std::shared_ptr<ServiceRecord> const& record, ServiceUse const& use,
                  Reason reason) noexcept;

    static References matching(std::vector<ServiceIndex::Offered> const& offered, LDAPFilter const& condition,
                               std::string const& className);
    static ServiceIndex::Rank rankOf(ServiceRecord const& record);

    std::shared_ptr<Events> const m_events;
    mutable FilterCache m_filters;
    mutable std::mutex m_mutex;   // guards all below, and what is not const in the ServiceRecords and their ServiceUses
    mutable ServiceIndex m_index; // a query may make an offer
    bool m_closed = false;
};

} // namespace detail::core

} // namespace cppmicroservices
