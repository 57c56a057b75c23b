#include "cppmicroservices/ServiceEvent.h"

#include "cppmicroservices/Constants.h"

#include <ostream>

namespace cppmicroservices {

ServiceEvent::ServiceEvent() = default;

ServiceEvent::ServiceEvent(Type type, ServiceReferenceBase const& reference)
    : m_isReal(true), m_type(type), m_reference(reference)
{
}

ServiceEvent::ServiceEvent(ServiceEvent const& other) = default;
ServiceEvent& ServiceEvent::operator=(ServiceEvent const& other) = default;

ServiceEvent::operator bool() const
{
    return m_isReal;
}

ServiceReferenceU ServiceEvent::GetServiceReference() const
{
    return m_reference;
}

ServiceEvent::Type ServiceEvent::GetType() const
{
    return m_type;
}

std::ostream& operator<<(std::ostream& os, ServiceEvent::Type const& type)
{
    switch (type) {
    case ServiceEvent::SERVICE_REGISTERED:
        return os << "REGISTERED";
    case ServiceEvent::SERVICE_MODIFIED:
        return os << "MODIFIED";
    case ServiceEvent::SERVICE_UNREGISTERING:
        return os << "UNREGISTERING";
    case ServiceEvent::SERVICE_MODIFIED_ENDMATCH:
        return os << "MODIFIED_ENDMATCH";
    }
    return os << "unknown service event type (" << static_cast<int>(type) << ')';
}

std::ostream& operator<<(std::ostream& os, ServiceEvent const& event)
{
    if (!event) {
        return os << "NONE";
    }
    os << event.GetType();
    if (auto const reference = event.GetServiceReference()) {
        // The bracket has no counterpart; those who parse the text know it so.
        os << ' ' << reference.GetProperty(Constants::SERVICE_ID).ToStringNoExcept()
           << " objectClass=" << reference.GetProperty(Constants::OBJECTCLASS).ToStringNoExcept() << ')';
    }
    return os;
}

} // namespace cppmicroservices
