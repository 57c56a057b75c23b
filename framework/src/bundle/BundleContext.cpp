#include "cppmicroservices/BundleContext.h"

#include "bundle/ContextAccess.h"
#include "bundle/DataFolder.h"
#include "framework/HandleAccess.h"
#include "service/ServiceRegistry.h"

#include "cppmicroservices/Bundle.h"

#include <functional>
#include <stdexcept>
#include <utility>

namespace cppmicroservices {

namespace {

using detail::core::access;
using detail::core::HandleAccess;

std::vector<Bundle> toHandles(detail::core::BundleRegistry::Records records)
{
    std::vector<Bundle> handles;
    handles.reserve(records.size());
    for (auto& record : records) {
        handles.push_back(HandleAccess::bundle(std::move(record)));
    }
    return handles;
}

/// What a wrong reference is told comes before what a wrong context is told.
detail::core::ServiceRegistry::Reference const& requireService(ServiceReferenceBase const& reference,
                                                               BundleContext const& context)
{
    auto const& data = HandleAccess::data(reference);
    if (!data || (!context && !reference)) {
        throw std::invalid_argument("Default constructed ServiceReference is not a valid input to GetService()");
    }
    return data;
}

} // namespace

BundleContext::BundleContext() = default;

BundleContext::BundleContext(std::shared_ptr<BundleContextPrivate> ctx) : m_context(std::move(ctx)) {}

bool BundleContext::operator==(BundleContext const& rhs) const
{
    bool const valid{*this};
    return valid == static_cast<bool>(rhs) && (!valid || m_context == rhs.m_context);
}

bool BundleContext::operator!=(BundleContext const& rhs) const
{
    return !(*this == rhs);
}

bool BundleContext::operator<(BundleContext const& rhs) const
{
    if (!*this || !rhs) {
        return *this && !rhs;
    }
    return std::less<BundleContextPrivate const*>()(m_context.get(), rhs.m_context.get());
}

BundleContext::operator bool() const
{
    return m_context && m_context->isValid();
}

BundleContext& BundleContext::operator=(std::nullptr_t)
{
    m_context.reset();
    return *this;
}

Any BundleContext::GetProperty(std::string const& key) const
{
    auto const properties = access(m_context).core->properties();
    auto const found = properties->find(key);
    return found != properties->cend() ? found->second : Any();
}

AnyMap BundleContext::GetProperties() const
{
    return *access(m_context).core->properties();
}

Bundle BundleContext::GetBundle() const
{
    return HandleAccess::bundle(access(m_context).bundle);
}

Bundle BundleContext::GetBundle(long id) const
{
    return HandleAccess::bundle(access(m_context).core->bundles().withId(id));
}

std::vector<Bundle> BundleContext::GetBundles(std::string const& location) const
{
    return toHandles(access(m_context).core->bundles().at(location));
}

std::vector<Bundle> BundleContext::GetBundles() const
{
    return toHandles(access(m_context).core->bundles().all());
}

ServiceRegistrationU BundleContext::RegisterService(InterfaceMapConstPtr const& service,
                                                    ServiceProperties const& properties)
{
    auto const own = access(m_context);
    return HandleAccess::registration(own.services().add(*own.context, service, properties));
}

std::vector<ServiceReferenceU> BundleContext::GetServiceReferences(std::string const& clazz, std::string const& filter)
{
    auto const own = access(m_context);
    std::vector<ServiceReferenceU> result;
    auto references = own.services().find(clazz, filter);
    result.reserve(references.size());
    for (auto& reference : references) {
        result.push_back(HandleAccess::reference(std::move(reference)));
    }
    return result;
}

ServiceReferenceU BundleContext::GetServiceReference(std::string const& clazz)
{
    return HandleAccess::reference(access(m_context).services().best(clazz));
}

std::shared_ptr<void> BundleContext::GetService(ServiceReferenceBase const& reference)
{
    auto const data = requireService(reference, *this);
    auto const own = access(m_context);
    return data->record->registry().object(data, *own.context);
}

InterfaceMapConstPtr BundleContext::GetService(ServiceReferenceU const& reference)
{
    auto const data = requireService(reference, *this);
    auto const own = access(m_context);
    return data->record->registry().interfaces(data, *own.context);
}

void BundleContext::requireContext() const
{
    if (!m_context) {
        throw std::runtime_error("The bundle context is no longer valid");
    }
}

std::string BundleContext::GetDataFile(std::string const& filename) const
{
    auto const own = access(m_context);
    if (own.bundle->isSystemBundle()) {
        return {};
    }
    auto const folder = detail::core::dataFolder(*own.core->properties(), own.bundle->id());
    if (folder.empty()) {
        return {};
    }
    detail::core::makeDataFolder(folder);
    return folder + filename;
}

std::vector<Bundle> BundleContext::InstallBundles(std::string const& location, AnyMap const& bundleManifest)
{
    auto const own = access(m_context);
    return toHandles(own.core->bundles().install(*own.core, location, bundleManifest));
}

namespace detail {

// Declared in GetBundleContext.h, which only a bundle can include.
US_Framework_EXPORT BundleContext MakeBundleContext(BundleContextPrivate* context);

BundleContext MakeBundleContext(BundleContextPrivate* context)
{
    return HandleAccess::context(BundleContextPrivate::at(context));
}

} // namespace detail

} // namespace cppmicroservices
