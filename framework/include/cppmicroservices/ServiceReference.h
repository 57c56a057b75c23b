#pragma once

#include "cppmicroservices/ServiceInterface.h"
#include "cppmicroservices/ServiceReferenceBase.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <utility>

namespace cppmicroservices {

/// A reference to a service of interface S.
template <class S>
class ServiceReference : public ServiceReferenceBase {
public:
    using ServiceType = S;

    ServiceReference() = default;

    /// Becomes an invalid reference when the service has no interface S.
    ServiceReference(ServiceReferenceBase const& base) : ServiceReferenceBase(base)
    {
        narrowTo(us_service_interface_iid<S>());
    }

    using ServiceReferenceBase::operator=;
    using ServiceReferenceBase::operator==;
    using ServiceReferenceBase::Hash;
};

/// A reference to a service of whatever interface.
template <>
class ServiceReference<void> : public ServiceReferenceBase {
public:
    using ServiceType = void;

    ServiceReference() = default;
    ServiceReference(ServiceReferenceBase const& base) : ServiceReferenceBase(base) {}

    using ServiceReferenceBase::operator=;
    using ServiceReferenceBase::operator==;
    using ServiceReferenceBase::Hash;

private:
    friend class detail::core::HandleAccess;

    explicit ServiceReference(std::shared_ptr<detail::core::ReferenceData const> data)
        : ServiceReferenceBase(std::move(data))
    {
    }
};

using ServiceReferenceU = ServiceReference<void>;

} // namespace cppmicroservices

namespace std {

template <class S>
struct hash<cppmicroservices::ServiceReference<S>> {
    std::size_t operator()(cppmicroservices::ServiceReference<S> const& arg) const { return arg.Hash(); }
};

} // namespace std
