#pragma once

#include "support/RunningFramework.h"
#include "support/Thing.h"

#include <cppmicroservices/ServiceProperties.h>
#include <cppmicroservices/ServiceReference.h>
#include <cppmicroservices/ServiceRegistration.h>

#include <memory>
#include <vector>

namespace bench {

/// A framework with a number of services of the one interface, each with properties of its own.
class Services {
public:
    using Registration = cppmicroservices::ServiceRegistration<Thing>;

    explicit Services(int count);

    int count() const { return static_cast<int>(m_registrations.size()); }
    cppmicroservices::BundleContext& context() { return m_context; }
    Registration& registration(int which) { return m_registrations[static_cast<std::size_t>(which)]; }
    cppmicroservices::ServiceReference<Thing> reference(int which) { return registration(which).GetReference(); }
    long id(int which);

    void registerAgain(int which);

    /// Three of a hundred services match it.
    static char const* selectiveFilter() { return "(&(kind=kind3)(size>=70))"; }

    static cppmicroservices::ServiceProperties propertiesOf(int which);

private:
    RunningFramework m_framework;
    cppmicroservices::BundleContext m_context;
    std::vector<std::shared_ptr<Thing>> m_objects;
    std::vector<Registration> m_registrations;
};

/// The services of that count, made at the first call and kept to the end: making and removing ten thousand may take
/// far longer than what is measured.
Services& services(int count);

/// To be called at the end of the program.
void removeAllServices();

} // namespace bench
