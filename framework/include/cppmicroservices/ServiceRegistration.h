#pragma once

#include "cppmicroservices/ServiceRegistrationBase.h"

namespace cppmicroservices {

/// The registration of a service that was registered with these interfaces.
template <class I1, class... Interfaces>
class ServiceRegistration : public ServiceRegistrationBase {
public:
    ServiceRegistration() = default;

    ServiceReference<I1> GetReference() const
    {
        return this->ServiceRegistrationBase::GetReference(us_service_interface_iid<I1>());
    }

    template <class Interface>
    ServiceReference<Interface> GetReference() const
    {
        static_assert(detail::Contains<Interface, I1, Interfaces...>::value,
                      "the service was not registered with this interface");
        return this->ServiceRegistrationBase::GetReference(us_service_interface_iid<Interface>());
    }

    using ServiceRegistrationBase::operator=;

private:
    friend class BundleContext;

    ServiceRegistration(ServiceRegistrationBase const& base) : ServiceRegistrationBase(base) {}
};

/// The registration of a service whose interfaces are known at run time only.
template <>
class ServiceRegistration<void> : public ServiceRegistrationBase {
public:
    ServiceRegistration() = default;
    ServiceRegistration(ServiceRegistrationBase const& base) : ServiceRegistrationBase(base) {}

    using ServiceRegistrationBase::operator=;
};

using ServiceRegistrationU = ServiceRegistration<void>;

} // namespace cppmicroservices
