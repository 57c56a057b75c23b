#include "contract/traces/TracedService.h"

#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/Constants.h>

#include <cctype>
#include <stdexcept>

namespace contract {

using namespace cppmicroservices;

long ServiceNames::idOf(ServiceReferenceBase const& reference) const
{
    return any_cast<long>(reference.GetProperty(Constants::SERVICE_ID)) - m_base;
}

std::string ServiceNames::nameOf(ServiceReferenceBase const& reference) const
{
    // One that was never valid must not be asked for its properties.
    return reference == ServiceReferenceU() ? "none" : "#" + std::to_string(idOf(reference));
}

std::string ServiceNames::relative(std::string text) const
{
    std::string const key = "service.id=";
    for (auto at = text.find(key); at != std::string::npos; at = text.find(key, at + 1)) {
        auto const begin = at + key.size();
        auto end = begin;
        while (end < text.size() && std::isdigit(static_cast<unsigned char>(text[end])) != 0) {
            ++end;
        }
        if (end > begin) {
            text.replace(begin, end - begin, std::to_string(std::stol(text.substr(begin, end - begin)) - m_base));
        }
    }
    return text;
}

InterfaceMapConstPtr TracedFactory::GetService(Bundle const& bundle, ServiceRegistrationBase const& registration)
{
    m_trace.line(m_name + " makes for " + bundle.GetSymbolicName() + ", " +
                 m_names.nameOf(registration.GetReference()));
    auto const made = [this] { return std::make_shared<TracedService>(1000 + m_made++, m_trace); };
    switch (m_way) {
    case nothing:
        return nullptr;
    case emptyMap:
        return std::make_shared<InterfaceMap>();
    case otherInterface:
        return MakeInterfaceMap<Third>(made());
    case nullObject:
        return std::make_shared<InterfaceMap>(InterfaceMap{{us_service_interface_iid<First>(), nullptr}});
    case throwsException:
        throw std::out_of_range("no object");
    case throwsNumber:
        throw 42;
    default:
        return MakeInterfaceMap<First, Second>(made());
    }
}

void TracedFactory::UngetService(Bundle const& bundle, ServiceRegistrationBase const& /*registration*/,
                                 InterfaceMapConstPtr const& service)
{
    auto const object = service ? ExtractInterface<First>(service) : nullptr;
    m_trace.line(m_name + " takes back " + (object ? std::to_string(object->number()) : "nothing") + " of " +
                 bundle.GetSymbolicName());
    if (m_way == ungetThrows) {
        throw std::runtime_error("not back");
    }
}

} // namespace contract
