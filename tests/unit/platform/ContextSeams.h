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
};

} // namespace ostrel::test
