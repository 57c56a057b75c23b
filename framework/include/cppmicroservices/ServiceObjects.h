#pragma once

#include "cppmicroservices/BundleContext.h"
#include "cppmicroservices/FrameworkExport.h"
#include "cppmicroservices/PrototypeServiceFactory.h"
#include "cppmicroservices/ServiceReference.h"

#include <memory>
#include <utility>

namespace cppmicroservices {

class ServiceObjectsBasePrivate;

/// What is the same in all ServiceObjects.
class US_Framework_EXPORT ServiceObjectsBase {
public:
    ServiceObjectsBase(ServiceObjectsBase const& other) = delete;
    ServiceObjectsBase& operator=(ServiceObjectsBase const& other) = delete;
    ServiceObjectsBase(ServiceObjectsBase&& other) noexcept;
    ServiceObjectsBase& operator=(ServiceObjectsBase&& other) noexcept;

protected:
    /// @throws std::invalid_argument "The service reference is invalid"
    ServiceObjectsBase(std::shared_ptr<BundleContextPrivate> const& context, ServiceReferenceBase const& reference);
    ~ServiceObjectsBase();

    std::shared_ptr<void> GetService() const;
    InterfaceMapConstPtr GetServiceInterfaceMap() const;
    ServiceReferenceBase GetReference() const;

private:
    std::unique_ptr<ServiceObjectsBasePrivate> m_private;
};

/// The objects of one service for one bundle; see BundleContext::GetServiceObjects().
///
/// Can be moved, not copied. What it gave remains valid when it is destroyed. May be used from any thread.
template <class S>
class ServiceObjects : private ServiceObjectsBase {
public:
    ServiceObjects(ServiceObjects const& other) = delete;
    ServiceObjects& operator=(ServiceObjects const& other) = delete;
    ServiceObjects(ServiceObjects&& other) : ServiceObjectsBase(std::move(other)) {}

    ServiceObjects& operator=(ServiceObjects&& other)
    {
        ServiceObjectsBase::operator=(std::move(other));
        return *this;
    }

    /// A new object when the service has a prototype factory, to which it goes back with the last copy of the pointer
    /// or when the service is unregistered; the bundle's stop does not take it away. For other services the same as
    /// BundleContext::GetService(). Null when the service is no longer registered or its factory does not deliver.
    ///
    /// @throws std::runtime_error when the context is no longer valid, or this object was moved from
    /// @throws whatever a service factory throws that is no std::exception
    /// @locks  none while a service factory runs
    std::shared_ptr<S> GetService() const { return std::static_pointer_cast<S>(ServiceObjectsBase::GetService()); }

    ServiceReference<S> GetServiceReference() const { return GetReference(); }

private:
    friend class BundleContext;

    ServiceObjects(std::shared_ptr<BundleContextPrivate> const& context, ServiceReference<S> const& reference)
        : ServiceObjectsBase(context, reference)
    {
    }
};

/// As above, with all interfaces of the service.
template <>
class US_Framework_EXPORT ServiceObjects<void> : private ServiceObjectsBase {
public:
    ServiceObjects(ServiceObjects const& other) = delete;
    ServiceObjects& operator=(ServiceObjects const& other) = delete;
    ServiceObjects(ServiceObjects&& other) noexcept;
    ServiceObjects& operator=(ServiceObjects&& other) noexcept;

    InterfaceMapConstPtr GetService() const;
    ServiceReferenceU GetServiceReference() const;

private:
    friend class BundleContext;

    ServiceObjects(std::shared_ptr<BundleContextPrivate> const& context, ServiceReferenceU const& reference);
};

} // namespace cppmicroservices
