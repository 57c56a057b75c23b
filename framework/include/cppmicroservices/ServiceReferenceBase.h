#pragma once

#include "cppmicroservices/Any.h"

#include <atomic> // not needed here, but sources rely on getting it and <mutex> with this header
#include <cstddef>
#include <functional>
#include <iosfwd>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace cppmicroservices {

class Bundle;
class BundleContext;
class ServiceRegistrationBase;

namespace detail::core {
class HandleAccess;
struct ReferenceData;
} // namespace detail::core

/// A handle on a registered service, which says what it is without using it. ServiceReference<S> is the typed form.
///
/// A reference outlives its service, and also its framework: it is then false and answers the last known properties.
/// One that is moved from stays what it was: moving is copying.
class US_Framework_EXPORT ServiceReferenceBase {
public:
    ServiceReferenceBase(ServiceReferenceBase const& other);
    ServiceReferenceBase& operator=(ServiceReferenceBase const& other);
    ServiceReferenceBase& operator=(std::nullptr_t);
    ~ServiceReferenceBase();

    /// True while the service is registered.
    explicit operator bool() const;

    /// The property of that name in any spelling, an empty Any when there is none.
    ///
    /// @throws std::logic_error on a default constructed reference
    Any GetProperty(std::string const& key) const;

    /// In no particular order.
    ///
    /// @throws std::logic_error on a default constructed reference
    std::vector<std::string> GetPropertyKeys() const;

    /// As above; replaces the contents of `keys`.
    void GetPropertyKeys(std::vector<std::string>& keys) const;

    /// The bundle that registered the service, or a handle on none once it is unregistered.
    Bundle GetBundle() const;

    /// The bundles that use the service, in no particular order.
    ///
    /// @throws std::system_error on a default constructed reference
    std::vector<Bundle> GetUsingBundles() const;

    /// The interface for which the reference was asked; "" for any.
    std::string GetInterfaceId() const;

    /// True when the registered service has that interface.
    bool IsConvertibleTo(std::string const& interfaceid) const;

    /// By ranking, then by falling id: the best service is the greatest. A default constructed reference is least.
    bool operator<(ServiceReferenceBase const& reference) const;

    /// Equal when both name the same service, whatever interface was asked for, or none.
    bool operator==(ServiceReferenceBase const& reference) const;

private:
    friend class detail::core::HandleAccess;
    friend class ServiceRegistrationBase;
    template <class S>
    friend class ServiceReference;
    friend struct ::std::hash<ServiceReferenceBase>;

    ServiceReferenceBase();
    explicit ServiceReferenceBase(std::shared_ptr<detail::core::ReferenceData const> data);

    /// Makes the reference one for that interface, or clears it when the service does not have it.
    void narrowTo(std::string const& interfaceId);
    std::size_t Hash() const;

    std::shared_ptr<detail::core::ReferenceData const> m_data;
};

/// Writes the registering bundle and all properties, or "Invalid service reference".
US_Framework_EXPORT std::ostream& operator<<(std::ostream& os, ServiceReferenceBase const& serviceRef);

} // namespace cppmicroservices

// clang-format off
US_HASH_FUNCTION_BEGIN(cppmicroservices::ServiceReferenceBase)
    return arg.Hash();
US_HASH_FUNCTION_END
// clang-format on
