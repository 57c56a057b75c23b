#pragma once

#include <cppmicroservices/BundleContext.h>

#include <string>

namespace ostrel::test {

/// Where a test looks into scripted bundles, and acts inside them. The test registers it as a service.
class ActivatorHooks {
public:
    virtual ~ActivatorHooks() = default;

    /// Called as "start NAME" and "stop NAME" in the activator, and as "get NAME" and "release NAME" in the factory of
    /// the bundle's service, each with the symbolic name. What it throws goes on to the framework.
    virtual void happened(const std::string& event, cppmicroservices::BundleContext context) = 0;
};

} // namespace ostrel::test
