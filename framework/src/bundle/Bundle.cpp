#include "cppmicroservices/Bundle.h"

#include "bundle/BundleContextPrivate.h"
#include "bundle/BundleLifecycle.h"
#include "bundle/BundleRecord.h"
#include "framework/FrameworkCore.h"
#include "framework/HandleAccess.h"
#include "resource/ResourceSearch.h"
#include "service/ServiceRegistry.h"

#include "cppmicroservices/BundleContext.h"
#include "cppmicroservices/BundleResource.h"

#include <ostream>
#include <stdexcept>
#include <utility>

namespace cppmicroservices {

namespace {

using detail::core::HandleAccess;

/// @throws std::runtime_error when the framework is gone
std::shared_ptr<detail::core::FrameworkCore> coreOf(detail::core::BundleRecord const& record)
{
    auto found = record.core();
    if (!found) {
        throw std::runtime_error(record.text() + " belongs to a stopped framework");
    }
    return found;
}

std::vector<ServiceReferenceU> toHandles(detail::core::ServiceRegistry::References const& references)
{
    std::vector<ServiceReferenceU> handles;
    handles.reserve(references.size());
    for (auto const& reference : references) {
        handles.push_back(HandleAccess::reference(reference));
    }
    return handles;
}

void requireInstalled(detail::core::BundleRecord const& record)
{
    if (record.state() == Bundle::STATE_UNINSTALLED) {
        throw std::logic_error(record.text() + " is in UNINSTALLED state");
    }
}

/// The services of the bundle's framework, or null when that is gone; throws for an uninstalled bundle.
std::shared_ptr<detail::core::ServiceRegistry> servicesOf(detail::core::BundleRecord const& record)
{
    requireInstalled(record);
    auto const core = record.core();
    return core ? core->services() : nullptr;
}

} // namespace

Bundle::Bundle() = default;

Bundle::Bundle(std::shared_ptr<detail::core::BundleRecord> record, std::shared_ptr<detail::core::FrameworkHold> hold)
    : m_record(std::move(record)), m_hold(std::move(hold))
{
}

Bundle::Bundle(Bundle const& other) = default;
Bundle::Bundle(Bundle&& other) noexcept = default;
Bundle& Bundle::operator=(Bundle const& other) = default;
Bundle& Bundle::operator=(Bundle&& other) noexcept = default;
Bundle::~Bundle() = default;

Bundle& Bundle::operator=(std::nullptr_t)
{
    m_record.reset();
    m_hold.reset();
    return *this;
}

bool Bundle::operator==(Bundle const& rhs) const
{
    return m_record == rhs.m_record;
}

bool Bundle::operator!=(Bundle const& rhs) const
{
    return !(*this == rhs);
}

bool Bundle::operator<(Bundle const& rhs) const
{
    if (!m_record || !rhs.m_record) {
        return m_record && !rhs.m_record;
    }
    return m_record->isBefore(*rhs.m_record);
}

Bundle::operator bool() const
{
    return m_record != nullptr;
}

Bundle::State Bundle::GetState() const
{
    return HandleAccess::requireRecord(*this)->state();
}

BundleContext Bundle::GetBundleContext() const
{
    auto context = HandleAccess::requireRecord(*this)->context();
    return context && context->isValid() ? HandleAccess::context(std::move(context)) : BundleContext();
}

long Bundle::GetBundleId() const
{
    return HandleAccess::requireRecord(*this)->id();
}

std::string Bundle::GetLocation() const
{
    return HandleAccess::requireRecord(*this)->location();
}

std::string Bundle::GetSymbolicName() const
{
    return HandleAccess::requireRecord(*this)->name();
}

BundleVersion Bundle::GetVersion() const
{
    return HandleAccess::requireRecord(*this)->version();
}

AnyMap const& Bundle::GetHeaders() const
{
    return HandleAccess::requireRecord(*this)->headers();
}

std::vector<ServiceReferenceU> Bundle::GetRegisteredServices() const
{
    auto const& record = HandleAccess::requireRecord(*this);
    auto const services = servicesOf(*record);
    return services ? toHandles(services->registeredBy(*record)) : std::vector<ServiceReferenceU>();
}

std::vector<ServiceReferenceU> Bundle::GetServicesInUse() const
{
    auto const& record = HandleAccess::requireRecord(*this);
    auto const services = servicesOf(*record);
    return services ? toHandles(services->usedBy(*record)) : std::vector<ServiceReferenceU>();
}

BundleResource Bundle::GetResource(std::string const& path) const
{
    auto const& record = *HandleAccess::requireRecord(*this);
    requireInstalled(record);
    return record.resources() ? detail::core::getResource(*record.resources(), record.name(), path) : BundleResource();
}

std::vector<BundleResource> Bundle::FindResources(std::string const& path, std::string const& filePattern,
                                                  bool recurse) const
{
    auto const& record = *HandleAccess::requireRecord(*this);
    requireInstalled(record);
    return record.resources()
               ? detail::core::findResources(*record.resources(), record.name(), path, filePattern, recurse)
               : std::vector<BundleResource>();
}

Bundle::TimeStamp Bundle::GetLastModified() const
{
    return HandleAccess::requireRecord(*this)->installedAt();
}

void Bundle::Start()
{
    // Copies: the activator may well assign to this very handle.
    auto const hold = m_hold;
    auto const record = HandleAccess::requireRecord(*this);
    auto const core = coreOf(*record);
    if (record->isSystemBundle()) {
        core->start();
    } else {
        detail::core::startBundle(*core, record);
    }
}

void Bundle::Start(std::uint32_t /*options*/)
{
    Start();
}

void Bundle::Stop()
{
    auto const hold = m_hold;
    auto const record = HandleAccess::requireRecord(*this);
    auto const core = record->core();
    if (!core) {
        return;
    }
    if (record->isSystemBundle()) {
        core->stop();
    } else {
        detail::core::stopBundle(*core, record);
    }
}

void Bundle::Stop(std::uint32_t /*options*/)
{
    Stop();
}

void Bundle::Uninstall()
{
    auto const hold = m_hold;
    auto const record = HandleAccess::requireRecord(*this);
    if (record->isSystemBundle()) {
        throw std::runtime_error("Cannot uninstall a system bundle.");
    }
    if (auto const core = record->core()) {
        detail::core::uninstallBundle(*core, record);
    }
}

std::ostream& operator<<(std::ostream& os, Bundle::State state)
{
    switch (state) {
    case Bundle::STATE_UNINSTALLED:
        return os << "UNINSTALLED";
    case Bundle::STATE_INSTALLED:
        return os << "INSTALLED";
    case Bundle::STATE_RESOLVED:
        return os << "RESOLVED";
    case Bundle::STATE_STARTING:
        return os << "STARTING";
    case Bundle::STATE_STOPPING:
        return os << "STOPPING";
    case Bundle::STATE_ACTIVE:
        return os << "ACTIVE";
    }
    return os;
}

std::ostream& operator<<(std::ostream& os, Bundle const& bundle)
{
    os << "Bundle[id=";
    return os << bundle.GetBundleId() << ", loc=" << bundle.GetLocation() << ", name=" << bundle.GetSymbolicName()
              << ", state=" << bundle.GetState() << ']';
}

std::ostream& operator<<(std::ostream& os, Bundle const* bundle)
{
    if (bundle == nullptr) {
        throw std::invalid_argument("invalid bundle");
    }
    return os << *bundle;
}

} // namespace cppmicroservices
