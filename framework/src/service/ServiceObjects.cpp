#include "cppmicroservices/ServiceObjects.h"

#include "bundle/BundleContextPrivate.h"
#include "framework/HandleAccess.h"
#include "service/ServiceRegistry.h"

#include <stdexcept>

namespace cppmicroservices {

class ServiceObjectsBasePrivate {
public:
    std::shared_ptr<BundleContextPrivate> context;
    ServiceReferenceBase reference;
};

namespace {

/// Calls `get` with the registry, the reference and the context.
template <class Get>
auto getFrom(ServiceObjectsBasePrivate const* objects, Get get)
    -> decltype(get(std::declval<detail::core::ServiceRegistry&>(), detail::core::ServiceRegistry::Reference(),
                    *objects->context))
{
    // Whether there is still a service comes first: null then, even when the context has ended as well.
    if (objects != nullptr && !objects->reference) {
        return nullptr;
    }
    if (objects == nullptr || !objects->context->isValid()) {
        throw std::runtime_error("The bundle context is no longer valid");
    }
    // Copies, as the factory may let go of these service objects.
    auto const data = detail::core::HandleAccess::data(objects->reference);
    auto const context = objects->context;
    return get(data->record->registry(), data, *context);
}

} // namespace

ServiceObjectsBase::ServiceObjectsBase(std::shared_ptr<BundleContextPrivate> const& context,
                                       ServiceReferenceBase const& reference)
{
    if (!reference) {
        throw std::invalid_argument("The service reference is invalid");
    }
    m_private = std::make_unique<ServiceObjectsBasePrivate>(ServiceObjectsBasePrivate{context, reference});
}

ServiceObjectsBase::ServiceObjectsBase(ServiceObjectsBase&& other) noexcept = default;
ServiceObjectsBase& ServiceObjectsBase::operator=(ServiceObjectsBase&& other) noexcept = default;
ServiceObjectsBase::~ServiceObjectsBase() = default;

std::shared_ptr<void> ServiceObjectsBase::GetService() const
{
    return getFrom(m_private.get(), [](auto& registry, auto const& reference, auto const& context) {
        return registry.ownObject(reference, context);
    });
}

InterfaceMapConstPtr ServiceObjectsBase::GetServiceInterfaceMap() const
{
    return getFrom(m_private.get(), [](auto& registry, auto const& reference, auto const& context) {
        return registry.ownInterfaces(reference, context);
    });
}

ServiceReferenceBase ServiceObjectsBase::GetReference() const
{
    return m_private ? m_private->reference : ServiceReferenceU();
}

ServiceObjects<void>::ServiceObjects(std::shared_ptr<BundleContextPrivate> const& context,
                                     ServiceReferenceU const& reference)
    : ServiceObjectsBase(context, reference)
{
}

ServiceObjects<void>::ServiceObjects(ServiceObjects&& other) noexcept = default;
ServiceObjects<void>& ServiceObjects<void>::operator=(ServiceObjects&& other) noexcept = default;

InterfaceMapConstPtr ServiceObjects<void>::GetService() const
{
    return GetServiceInterfaceMap();
}

ServiceReferenceU ServiceObjects<void>::GetServiceReference() const
{
    return GetReference();
}

} // namespace cppmicroservices
