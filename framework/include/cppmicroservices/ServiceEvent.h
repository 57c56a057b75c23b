#pragma once

#include "cppmicroservices/ServiceReference.h"

#include <cstdint>
#include <iosfwd>

namespace cppmicroservices {

/// A change of a service, as service listeners get it.
class US_Framework_EXPORT ServiceEvent {
public:
    enum Type : std::uint32_t {
        /// The service is registered and can be found.
        SERVICE_REGISTERED = 0x00000001,

        /// The service has other properties, and these match the listener's filter.
        SERVICE_MODIFIED = 0x00000002,

        /// The service is no longer found, but can still be got and used until all listeners were called.
        SERVICE_UNREGISTERING = 0x00000004,

        /// The service has other properties; these do not match the listener's filter, as the former ones did.
        SERVICE_MODIFIED_ENDMATCH = 0x00000008,
    };

    /// An event that is false, of type SERVICE_UNREGISTERING and of no service.
    ServiceEvent();
    ServiceEvent(Type type, ServiceReferenceBase const& reference);
    ServiceEvent(ServiceEvent const& other);
    ServiceEvent& operator=(ServiceEvent const& other);

    explicit operator bool() const;

    ServiceReferenceU GetServiceReference() const;

    /// A false reference when the service has no interface S.
    template <class S>
    ServiceReference<S> GetServiceReference() const
    {
        return GetServiceReference();
    }

    Type GetType() const;

private:
    // Here and not behind a pointer, as the end of a service has to be told when memory is short as well.
    bool m_isReal = false;
    Type m_type = SERVICE_UNREGISTERING;
    ServiceReferenceU m_reference;
};

US_Framework_EXPORT std::ostream& operator<<(std::ostream& os, ServiceEvent::Type const& type);

/// Writes the type, and the service's id and classes while it is registered.
US_Framework_EXPORT std::ostream& operator<<(std::ostream& os, ServiceEvent const& event);

} // namespace cppmicroservices
