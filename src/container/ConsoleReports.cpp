#include "container/MicroServicesContainer.h"

#include <cppmicroservices/AnyMap.h>

#include <iomanip>
#include <iostream>

// These share no formatting with the stream reports on purpose: hosts read both, and the layouts differ throughout.
namespace ostrel::us_container {

using cppmicroservices::AnyMap;
using cppmicroservices::Bundle;
using cppmicroservices::ServiceReference;
using cppmicroservices::ServiceReferenceBase;

namespace {

/// Symbolic names of the service's users, ", " after each, the last included.
std::string joinedUsers(const ServiceReferenceBase& reference)
{
    std::stringstream users;
    for (const Bundle& user : reference.GetUsingBundles()) {
        users << user.GetSymbolicName() << ", ";
    }
    return users.str();
}

void printUsers(const std::string& joined)
{
    std::cout << " (used by: " << joined.substr(0, joined.size() - 2) << ")";
}

} // namespace

void MicroServicesContainer::printAllBundles() const
{
    const std::lock_guard lock{m_mutex};
    const std::vector<Bundle> bundles = m_context.GetBundles();
    // KEPT ON PURPOSE: four captions over rows of three values, and no flush of its own after the rule.
    std::cout << " Id  | " << std::setw(40) << "Library"
              << " | " << std::setw(40) << "Name"
              << " | "
              << "Status" << std::endl;
    std::cout << "------------------------------------------------------------------------------------------\n";
    for (const Bundle& bundle : bundles) {
        std::cout << std::setw(4) << bundle.GetBundleId() << " | " << std::setw(40) << bundle.GetSymbolicName() << " | "
                  << bundle.GetState() << std::endl;
    }
}

void MicroServicesContainer::printBundleProperties(const std::string& location) const
{
    const std::lock_guard lock{m_mutex};
    for (const Bundle& bundle : m_context.GetBundles(location)) {
        if (!bundle) {
            continue;
        }
        std::cout << std::setw(3) << bundle.GetBundleId() << " | " << bundle.GetSymbolicName() << " | "
                  << bundle.GetState() << std::endl;
        std::vector<ServiceReference<void>> used = bundle.GetServicesInUse();
        if (used.empty()) {
            std::cout << "No services in use." << std::endl;
        } else {
            std::cout << "Services in use:" << std::endl;
            for (ServiceReference<void>& reference : used) {
                printService(reference);
            }
        }
        std::cout << "Properties:" << std::endl;
        const AnyMap headers = bundle.GetHeaders();
        for (const auto& [key, value] : headers) {
            std::cout << "  " << key << ": " << value.ToString() << std::endl;
        }
    }
}

void MicroServicesContainer::printService(ServiceReference<void>& reference) const
{
    const std::lock_guard lock{m_mutex};
    const std::string users = joinedUsers(reference);
    std::cout << "Service: " << reference.GetProperty("service.id").ToString();
    if (users.empty()) {
        std::cout << " (unused)";
    } else {
        printUsers(users);
    }
    std::cout << std::endl;

    std::vector<std::string> keys;
    reference.GetPropertyKeys(keys);
    for (const std::string& key : keys) {
        std::cout << "  " << key << ": " << reference.GetProperty(key).ToString() << std::endl;
    }
}

void MicroServicesContainer::printBundleServices(const std::string& location, unsigned int indent) const
{
    const std::lock_guard lock{m_mutex};
    for (const Bundle& bundle : m_context.GetBundles(location)) {
        if (bundle) {
            printBundleServices(bundle, indent);
        }
    }
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): by value is the promised signature
void MicroServicesContainer::printBundleServices(Bundle bundle, unsigned int indent) const
{
    const std::lock_guard lock{m_mutex};
    for (const ServiceReference<void>& reference : bundle.GetRegisteredServices()) {
        const std::string users = joinedUsers(reference);
        std::cout << std::string(indent, ' ') << "Service: " << reference.GetProperty("objectclass").ToString();
        if (!users.empty()) {
            printUsers(users);
        }
        std::cout << std::endl;
    }
}

void MicroServicesContainer::printAllServices() const
{
    const std::lock_guard lock{m_mutex};
    const std::vector<Bundle> bundles = m_context.GetBundles();
    std::cout << "Manually loaded service types: " << std::endl;
    for (const std::string& name : m_loadedServiceNames) {
        std::cout << "  " << name << std::endl;
    }
    for (const Bundle& bundle : bundles) {
        std::cout << bundle.GetSymbolicName() << ":" << std::endl;
        printBundleServices(bundle, 2);
    }
}

void MicroServicesContainer::printServiceProperties(const std::string& interfaceName)
{
    const std::lock_guard lock{m_mutex};
    for (ServiceReference<void> reference : m_context.GetServiceReferences(interfaceName, "")) {
        printService(reference);
    }
}

} // namespace ostrel::us_container
