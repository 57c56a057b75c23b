#include "cppmicroservices/BundleEvent.h"

#include "cppmicroservices/Bundle.h"

#include <ostream>
#include <stdexcept>

namespace cppmicroservices {

class BundleEventData {
public:
    BundleEvent::Type type;
    Bundle bundle;
    Bundle origin;
};

BundleEvent::BundleEvent() = default;

BundleEvent::BundleEvent(Type type, Bundle const& bundle) : BundleEvent(type, bundle, bundle) {}

BundleEvent::BundleEvent(Type type, Bundle const& bundle, Bundle const& origin)
{
    if (!bundle) {
        throw std::invalid_argument("invalid bundle");
    }
    if (!origin) {
        throw std::invalid_argument("invalid origin");
    }
    m_data = std::make_shared<BundleEventData>(BundleEventData{type, bundle, origin});
}

BundleEvent::operator bool() const
{
    return m_data != nullptr;
}

Bundle BundleEvent::GetBundle() const
{
    return m_data ? m_data->bundle : Bundle();
}

BundleEvent::Type BundleEvent::GetType() const
{
    return m_data ? m_data->type : BUNDLE_UNINSTALLED;
}

Bundle BundleEvent::GetOrigin() const
{
    return m_data ? m_data->origin : Bundle();
}

bool BundleEvent::operator==(BundleEvent const& evt) const
{
    if (!m_data || !evt.m_data) {
        return m_data == evt.m_data;
    }
    return m_data->type == evt.m_data->type && m_data->bundle == evt.m_data->bundle &&
           m_data->origin == evt.m_data->origin;
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
