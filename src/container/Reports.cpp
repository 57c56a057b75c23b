#include "container/MicroServicesContainer.h"

#include <cppmicroservices/AnyMap.h>

namespace ostrel::us_container {

using cppmicroservices::Bundle;
using cppmicroservices::ServiceReference;

std::string MicroServicesContainer::getMicroServicesString()
{
    std::stringstream stream{std::ios_base::in | std::ios_base::out};
    printAllBundles(stream);
    printAllServices(stream);
    return stream.str();
}

void MicroServicesContainer::printAllBundles(std::stringstream& stream)
{
    const std::lock_guard lock{m_mutex};
    stream << "Bundles:\n";
    for (const std::string& location : listManuallyLoadedBundles()) {
        for (const Bundle& bundle : m_context.GetBundles(location)) {
            stream << "    " << bundle.GetSymbolicName() << ", " << bundle.GetBundleId() << ", " << bundle.GetState()
                   << "\n";
            for (const auto& [key, value] : bundle.GetHeaders()) {
                stream << "        " << key << " = " << value.ToString() << "\n";
            }
        }
    }
}

void MicroServicesContainer::printAllServices(std::stringstream& stream)
{
    const std::lock_guard lock{m_mutex};
    stream << "Manually loaded service types:\n";
    for (const std::string& classes : listManuallyLoadedServices()) {
        stream << "    " << classes << "\n";
    }
    stream << "Bundle services:\n";
    for (const std::string& location : listManuallyLoadedBundles()) {
        for (const Bundle& bundle : m_context.GetBundles(location)) {
            stream << "    " << bundle.GetSymbolicName() << ":\n";
            printBundleServices(stream, bundle);
        }
    }
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): by value is the promised signature
void MicroServicesContainer::printBundleServices(std::stringstream& stream, Bundle bundle)
{
    const std::lock_guard lock{m_mutex};
    for (ServiceReference<void>& reference : bundle.GetRegisteredServices()) {
        printService(stream, reference);
    }
}

void MicroServicesContainer::printService(std::stringstream& stream, ServiceReference<void>& reference)
{
    const std::lock_guard lock{m_mutex};
    stream << "        Service id: " << reference.GetProperty("service.id").ToString() + "\n";

    stream << "            Classes:\n";
    // Held to the end, so that the users below include the bundle that owns the context.
    const cppmicroservices::InterfaceMapConstPtr interfaces = m_context.GetService(reference);
    if (interfaces) {
        for (const auto& [name, object] : *interfaces) {
            if (object) {
                // KEPT ON PURPOSE: fifteen spaces, one less than properties and users have.
                stream << "               " << name << "\n";
            }
        }
    }

    stream << "            Properties:\n";
    std::vector<std::string> keys;
    reference.GetPropertyKeys(keys);
    for (const std::string& key : keys) {
        stream << "                " << key << " = " << reference.GetProperty(key).ToString() << "\n";
    }

    stream << "            Used by:\n";
    for (const Bundle& user : reference.GetUsingBundles()) {
        stream << "                " << user.GetSymbolicName() << "\n";
    }
}

} // namespace ostrel::us_container
