#include "cppmicroservices/BundleEvent.h"

#include <ostream>
#include <stdexcept>

namespace cppmicroservices {

BundleEvent::BundleEvent() = default;

BundleEvent::BundleEvent(Type type, Bundle const& bundle) : BundleEvent(type, bundle, bundle) {}

BundleEvent::BundleEvent(Type type, Bundle const& bundle, Bundle const& origin)
    : m_type(type), m_bundle(bundle), m_origin(origin)
{
    if (!bundle) {
        throw std::invalid_argument("invalid bundle");
    }
    if (!origin) {
        throw std::invalid_argument("invalid origin");
    }
}

BundleEvent::operator bool() const
{
    return static_cast<bool>(m_bundle);
}

Bundle BundleEvent::GetBundle() const
{
    return m_bundle;
}

BundleEvent::Type BundleEvent::GetType() const
{
    return m_type;
}

Bundle BundleEvent::GetOrigin() const
{
    return m_origin;
}

bool BundleEvent::operator==(BundleEvent const& evt) const
{
    return m_type == evt.m_type && m_bundle == evt.m_bundle && m_origin == evt.m_origin;
}

std::ostream& operator<<(std::ostream& os, BundleEvent::Type eventType)
{
    switch (eventType) {
    case BundleEvent::BUNDLE_INSTALLED:
        return os << "INSTALLED";
    case BundleEvent::BUNDLE_STARTED:
        return os << "STARTED";
    case BundleEvent::BUNDLE_STOPPED:
        return os << "STOPPED";
    case BundleEvent::BUNDLE_UNINSTALLED:
        return os << "UNINSTALLED";
    case BundleEvent::BUNDLE_RESOLVED:
        return os << "RESOLVED";
    case BundleEvent::BUNDLE_UNRESOLVED:
        return os << "UNRESOLVED";
    case BundleEvent::BUNDLE_STARTING:
        return os << "STARTING";
    case BundleEvent::BUNDLE_STOPPING:
        return os << "STOPPING";
    case BundleEvent::BUNDLE_LAZY_ACTIVATION:
        return os << "LAZY_ACTIVATION";
    case BundleEvent::BUNDLE_UPDATED:
        break; // has no name, as it is never sent
    }
    return os << "Unknown bundle event type (" << static_cast<int>(eventType) << ')';
}

std::ostream& operator<<(std::ostream& os, BundleEvent const& event)
{
    if (!event) {
        return os << "NONE";
    }
    auto const bundle = event.GetBundle();
    return os << event.GetType() << " #" << bundle.GetBundleId() << " (" << bundle.GetSymbolicName() << " at "
              << bundle.GetLocation() << ')';
}

} // namespace cppmicroservices
