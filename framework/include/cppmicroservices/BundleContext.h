#pragma once

#include "cppmicroservices/AnyMap.h"
#include "cppmicroservices/GlobalConfig.h"
#include "cppmicroservices/ListenerFunctors.h"
#include "cppmicroservices/ListenerToken.h"
#include "cppmicroservices/ServiceInterface.h"
#include "cppmicroservices/ServiceRegistration.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace cppmicroservices {

class Bundle;
class BundleContextPrivate;
class ServiceFactory;

template <class S>
class ServiceObjects;

namespace detail::core {
class HandleAccess;
} // namespace detail::core

/// What a bundle does with the framework while it runs.
///
/// A context is valid from the start of its bundle to the end of its stop; a bundle that is started again gets a new
/// one. Every member but the constructor, the comparisons and `bool` throws std::runtime_error "The bundle context is
/// no longer valid" on an invalid context. All members may be called from any thread.
class US_Framework_EXPORT BundleContext {
public:
    /// An invalid context.
    BundleContext();

    /// Two valid contexts are equal when they are the same one; invalid ones are all equal, and greater than valid
    /// ones.
    bool operator==(BundleContext const& rhs) const;
    bool operator!=(BundleContext const& rhs) const;
    bool operator<(BundleContext const& rhs) const;
    explicit operator bool() const;
    BundleContext& operator=(std::nullptr_t);

    /// The framework's property `key` (its case matters), an empty Any when there is none.
    Any GetProperty(std::string const& key) const;
    AnyMap GetProperties() const;

    /// The context's own bundle.
    Bundle GetBundle() const;

    /// The bundle with that id, or a handle on none.
    Bundle GetBundle(long id) const;

    /// The bundles installed from exactly this location.
    std::vector<Bundle> GetBundles(std::string const& location) const;

    /// All installed bundles by location in byte order, those of one location in order of installation.
    std::vector<Bundle> GetBundles() const;

    /// Registers a service.
    ///
    /// @throws std::invalid_argument for an empty map, or an empty name or a null object in it
    /// @throws std::runtime_error when two property names differ by case only
    /// @throws BadAnyCastException when a given "service.id" or "objectclass" has another type than the framework's
    /// @cost   O(log n) in the number of services
    [[nodiscard]] ServiceRegistrationU RegisterService(InterfaceMapConstPtr const& service,
                                                       ServiceProperties const& properties = ServiceProperties());

    template <class I1, class... Interfaces, class Impl>
    ServiceRegistration<I1, Interfaces...> RegisterService(std::shared_ptr<Impl> const& impl,
                                                           ServiceProperties const& properties = ServiceProperties())
    {
        InterfaceMapConstPtr const interfaces = MakeInterfaceMap<I1, Interfaces...>(impl);
        return RegisterService(interfaces, properties);
    }

    template <class I1, class... Interfaces>
    ServiceRegistration<I1, Interfaces...> RegisterService(std::shared_ptr<ServiceFactory> const& factory,
                                                           ServiceProperties const& properties = ServiceProperties())
    {
        InterfaceMapConstPtr const interfaces = MakeInterfaceMap<I1, Interfaces...>(factory);
        return RegisterService(interfaces, properties);
    }

    /// The services of a class, best first: by falling ranking, then by rising id. With an empty class all services, in
    /// order of registration. An LDAP filter may narrow the result down.
    ///
    /// @throws std::invalid_argument for a malformed filter, unless there is no service of the class
    /// @cost   linear in the number of services of the class; constant for "(service.id=N)"
    std::vector<ServiceReferenceU> GetServiceReferences(std::string const& clazz,
                                                        std::string const& filter = std::string());

    template <class S>
    std::vector<ServiceReference<S>> GetServiceReferences(std::string const& filter = std::string())
    {
        std::vector<ServiceReferenceU> const untyped = GetServiceReferences(interfaceId<S>(), filter);
        return std::vector<ServiceReference<S>>(untyped.begin(), untyped.end());
    }

    /// The best service of a class, or an invalid reference. With an empty class the first one registered.
    ///
    /// @cost constant
    ServiceReferenceU GetServiceReference(std::string const& clazz);

    template <class S>
    ServiceReference<S> GetServiceReference()
    {
        return ServiceReference<S>(GetServiceReference(interfaceId<S>()));
    }

    /// The object of a service. The context's bundle uses the service until the last copy of the pointer is gone; each
    /// call is a use of its own. Null when a service factory does not deliver.
    ///
    /// @throws std::invalid_argument when the reference is invalid
    /// @throws whatever a service factory throws that is no std::exception
    /// @locks  none while a service factory runs
    std::shared_ptr<void> GetService(ServiceReferenceBase const& reference);

    /// As above: all interfaces of the service.
    InterfaceMapConstPtr GetService(ServiceReferenceU const& reference);

    template <class S>
    std::shared_ptr<S> GetService(ServiceReference<S> const& reference)
    {
        ServiceReferenceBase const& base = reference;
        return std::static_pointer_cast<S>(GetService(base));
    }

    /// Through which a bundle gets several objects of a service with a prototype factory. Include ServiceObjects.h.
    ///
    /// @throws std::invalid_argument "The service reference is invalid"
    template <class S>
    ServiceObjects<S> GetServiceObjects(ServiceReference<S> const& reference)
    {
        requireContext();
        return ServiceObjects<S>(m_context, reference);
    }

    /// Adds a listener to the changes of the services that match the LDAP filter; of all for "". It goes when the
    /// context's bundle stops, before the services that the bundle left are unregistered.
    ///
    /// A listener that throws causes a framework event of type FRAMEWORK_ERROR. Which listener is called first is not
    /// specified. One that is added or removed while an event is delivered does not get that event, unless it had it
    /// already.
    ///
    /// @throws std::invalid_argument for a malformed filter
    /// @cost   O(log n) in the number of listeners. A service event costs one filter match for each listener whose
    ///         filter does not name another class or another "service.id".
    ListenerToken AddServiceListener(ServiceListener const& listener, std::string const& filter = std::string());

    /// Removes one listener that this context added for the same function, or for a callable of the same type.
    US_DEPRECATED void RemoveServiceListener(ServiceListener const& listener);

    /// Adds a listener to the changes of all bundles; see AddServiceListener().
    ListenerToken AddBundleListener(BundleListener const& listener);

    /// As RemoveServiceListener().
    US_DEPRECATED void RemoveBundleListener(BundleListener const& listener);

    /// Adds a listener to the framework's events; see AddServiceListener(). What it throws is only noted in the
    /// diagnostics.
    ListenerToken AddFrameworkListener(FrameworkListener const& listener);

    /// As RemoveServiceListener().
    US_DEPRECATED void RemoveFrameworkListener(FrameworkListener const& listener);

    /// Removes the listener, of whatever kind, that this context added. After that no delivery begins to call it; one
    /// in another thread may be calling it still. Does nothing for a token of another context or of none.
    void RemoveListener(ListenerToken token);

    /// As above, for a member function of a receiver that outlives the listener. The context has one service listener
    /// for a receiver at most: another one, for whatever member function, takes the place of the former.
    template <class R>
    US_DEPRECATED ListenerToken AddServiceListener(R* receiver, void (R::*callback)(ServiceEvent const&),
                                                   std::string const& filter = std::string())
    {
        return AddServiceListener(ServiceListener(std::bind(callback, receiver, std::placeholders::_1)),
                                  static_cast<void*>(receiver), filter);
    }

    /// Removes a listener for that receiver, as the next ones do.
    template <class R>
    US_DEPRECATED void RemoveServiceListener(R* receiver, void (R::*callback)(ServiceEvent const&))
    {
        RemoveServiceListener(ServiceListener(std::bind(callback, receiver, std::placeholders::_1)),
                              static_cast<void*>(receiver));
    }

    template <class R>
    US_DEPRECATED ListenerToken AddBundleListener(R* receiver, void (R::*callback)(BundleEvent const&))
    {
        return AddBundleListener(BundleListener(std::bind(callback, receiver, std::placeholders::_1)),
                                 static_cast<void*>(receiver));
    }

    template <class R>
    US_DEPRECATED void RemoveBundleListener(R* receiver, void (R::*callback)(BundleEvent const&))
    {
        RemoveBundleListener(BundleListener(std::bind(callback, receiver, std::placeholders::_1)),
                             static_cast<void*>(receiver));
    }

    template <class R>
    US_DEPRECATED ListenerToken AddFrameworkListener(R* receiver, void (R::*callback)(FrameworkEvent const&))
    {
        return AddFrameworkListener(FrameworkListener(std::bind(callback, receiver, std::placeholders::_1)),
                                    static_cast<void*>(receiver));
    }

    template <class R>
    US_DEPRECATED void RemoveFrameworkListener(R* receiver, void (R::*callback)(FrameworkEvent const&))
    {
        RemoveFrameworkListener(FrameworkListener(std::bind(callback, receiver, std::placeholders::_1)),
                                static_cast<void*>(receiver));
    }

    /// The path of a file of that name in the bundle's own folder below the framework's storage, which is made; "" for
    /// the framework itself. The folder goes when the bundle is uninstalled, not when the framework stops.
    ///
    /// @throws std::invalid_argument when the folder cannot be made
    std::string GetDataFile(std::string const& filename) const;

    /// Installs the bundles in the file at `location`; those of a location that are installed already are returned as
    /// they are. With `bundleManifest`, its keys name the bundles and its values are their manifests, and the manifests
    /// in the file are not read.
    ///
    /// @throws std::runtime_error that names the location and the reason; no bundle is installed then
    std::vector<Bundle>
    InstallBundles(std::string const& location,
                   AnyMap const& bundleManifest = AnyMap(any_map::UNORDERED_MAP_CASEINSENSITIVE_KEYS));

private:
    friend class detail::core::HandleAccess;

    explicit BundleContext(std::shared_ptr<BundleContextPrivate> ctx);

    /// @throws std::runtime_error for a default constructed context
    void requireContext() const;

    // With the receiver of a member function, or null for another callable.
    ListenerToken AddServiceListener(ServiceListener const& listener, void* receiver, std::string const& filter);
    void RemoveServiceListener(ServiceListener const& listener, void* receiver);
    ListenerToken AddBundleListener(BundleListener const& listener, void* receiver);
    void RemoveBundleListener(BundleListener const& listener, void* receiver);
    ListenerToken AddFrameworkListener(FrameworkListener const& listener, void* receiver);
    void RemoveFrameworkListener(FrameworkListener const& listener, void* receiver);

    template <class S>
    static std::string const& interfaceId()
    {
        std::string const& id = us_service_interface_iid<S>();
        if (id.empty()) {
            throw ServiceException("The service interface class has no "
                                   "CPPMICROSERVICES_DECLARE_SERVICE_INTERFACE macro");
        }
        return id;
    }

    std::shared_ptr<BundleContextPrivate> m_context;
};

} // namespace cppmicroservices
