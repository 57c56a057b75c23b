#pragma once

#include "cppmicroservices/ServiceProperties.h"
#include "cppmicroservices/ServiceReference.h"

#include <cstddef>
#include <functional>
#include <iosfwd>
#include <memory>
#include <string>

namespace cppmicroservices {

class BundleContext;

namespace detail::core {
class HandleAccess;
class ServiceRecord;
} // namespace detail::core

/// The registering bundle's handle on its service. Destroying it does not unregister the service.
///
/// GetReference(), SetProperties() and Unregister() throw std::logic_error on a default constructed registration and
/// after the service was unregistered.
class US_Framework_EXPORT ServiceRegistrationBase {
public:
    ServiceRegistrationBase(ServiceRegistrationBase const& other);
    ServiceRegistrationBase(ServiceRegistrationBase&& other) noexcept;
    ServiceRegistrationBase& operator=(ServiceRegistrationBase const& other);
    ServiceRegistrationBase& operator=(ServiceRegistrationBase&& other) noexcept;
    ServiceRegistrationBase& operator=(std::nullptr_t);
    ~ServiceRegistrationBase();

    /// False when default constructed or cleared; stays true when the service is unregistered.
    explicit operator bool() const;

    ServiceReferenceBase GetReference(std::string const& interfaceId = std::string()) const;

    /// Replaces all properties but "service.id", "objectclass" and "service.scope".
    ///
    /// @throws std::runtime_error when two names differ by case only; std::invalid_argument for a "service.ranking"
    ///         that is no int. The old properties stay then.
    /// @cost   O(log n) in the number of services
    void SetProperties(ServiceProperties const& properties);
    void SetProperties(ServiceProperties&& properties);

    /// Takes the service out of the framework. Objects of it that are held stay usable.
    ///
    /// @locks none while factories and destructors run
    /// @cost  O(log n) in the number of services
    void Unregister();

    bool operator<(ServiceRegistrationBase const& other) const;
    bool operator==(ServiceRegistrationBase const& other) const;

private:
    friend class detail::core::HandleAccess;
    template <class I1, class... Interfaces>
    friend class ServiceRegistration;
    friend struct ::std::hash<ServiceRegistrationBase>;

    ServiceRegistrationBase();
    explicit ServiceRegistrationBase(std::shared_ptr<detail::core::ServiceRecord> record);
    std::size_t Hash() const;

    std::shared_ptr<detail::core::ServiceRecord> m_record;
};

US_Framework_EXPORT std::ostream& operator<<(std::ostream& os, ServiceRegistrationBase const& reg);

} // namespace cppmicroservices

// clang-format off
US_HASH_FUNCTION_BEGIN(cppmicroservices::ServiceRegistrationBase)
    return arg.Hash();
US_HASH_FUNCTION_END
// clang-format on
