#pragma once

#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/BundleContext.h>

#include <functional>
#include <string>
#include <vector>

namespace ostrel::test {

/// Replaces single functions of every framework context of the process, for what no real framework does at will.
///
/// The test program defines these functions itself; each does what is set here, or else calls the real one. What is set
/// is forgotten when the object goes.
class ContextSeams {
public:
    using Bundles = std::vector<cppmicroservices::Bundle>;

    ContextSeams();
    ContextSeams(const ContextSeams&) = delete;
    ContextSeams& operator=(const ContextSeams&) = delete;
    ~ContextSeams();

    std::function<Bundles(const std::string& location)> installBundles;
    std::function<Bundles()> getBundles;
};

/// The real functions, for use in what is set.
ContextSeams::Bundles reallyInstallBundles(cppmicroservices::BundleContext context, const std::string& location);
ContextSeams::Bundles reallyGetBundles(const cppmicroservices::BundleContext& context);

} // namespace ostrel::test
