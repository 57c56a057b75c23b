#pragma once

#include "container/MicroServicesContainer.h"
#include "integration/support/Services.h"

#include <cppmicroservices/Bundle.h>

#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

namespace ostrel::test {

/// One container, and what a public operation of it can be called with.
struct Subject {
    us_container::MicroServicesContainer& container;
    std::vector<std::string> bundleNames;  ///< under which bundles are started
    std::vector<std::string> locations;    ///< of the same bundles
    std::vector<std::string> serviceNames; ///< under which services are loaded
    cppmicroservices::Bundle bundle;
    ServiceReferenceU service;

    const std::string& bundleName(unsigned choice) const { return bundleNames[choice % bundleNames.size()]; }
    const std::string& location(unsigned choice) const { return locations[choice % locations.size()]; }
    const std::string& serviceName(unsigned choice) const { return serviceNames[choice % serviceNames.size()]; }
};

/// One public operation. `choice` picks its arguments among those of the subject.
struct Operation {
    const char* name;
    std::function<void(const Subject& subject, unsigned choice)> run;
    bool printsToConsole = false;

    friend std::ostream& operator<<(std::ostream& stream, const Operation& operation);
};

/// All public operations but the constructors and the destructor.
const std::vector<Operation>& allOperations();

/// Lets std::cout print nowhere while it lives. Any number of threads may print.
class SilentConsole {
public:
    SilentConsole();
    SilentConsole(const SilentConsole&) = delete;
    SilentConsole& operator=(const SilentConsole&) = delete;
    ~SilentConsole();

private:
    std::streambuf* m_before;
};

} // namespace ostrel::test
