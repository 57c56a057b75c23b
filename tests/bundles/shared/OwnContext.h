#pragma once

#include <cppmicroservices/BundleContext.h>

namespace ostrel::test {

/// A service that says what GetBundleContext() gives in the code of its bundle.
class OwnContext {
public:
    virtual ~OwnContext() = default;

    /// In the constructor of the bundle's activator.
    virtual cppmicroservices::BundleContext atConstruction() const = 0;
    /// At the call.
    virtual cppmicroservices::BundleContext now() const = 0;
};

} // namespace ostrel::test
