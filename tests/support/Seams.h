#pragma once

#include "platform/Utf16Path.h"

#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/BundleContext.h>

#include <functional>
#include <string>
#include <vector>

namespace ostrel::test {

/// Replaces single functions that the library calls, for what no real bundle can bring about.
///
/// Link `ostrel_test_seams` into a test program of the shared library. The program then defines these functions itself,
/// and the dynamic loader gives its definitions to the library; each does what is set here, or else calls the real
/// one. What is set is forgotten when the object goes. Set it before other threads run.
class Seams {
public:
    Seams();
    Seams(const Seams&) = delete;
    Seams& operator=(const Seams&) = delete;
    ~Seams();

    std::function<void(cppmicroservices::Bundle&)> start;
    std::function<void(cppmicroservices::Bundle&)> stop;
    std::function<cppmicroservices::Bundle::State(const cppmicroservices::Bundle&)> getState;
    std::function<std::string(const cppmicroservices::Bundle&)> getLocation;
    std::function<std::vector<cppmicroservices::Bundle>(const std::string& location)> getBundles;
    std::function<std::vector<cppmicroservices::Bundle>(const ostrel::platform::Utf16Path&)> installBundles;
    std::function<void()> yield;
};

/// The real functions, for use in what is set.
void reallyStart(cppmicroservices::Bundle& bundle);
void reallyStop(cppmicroservices::Bundle& bundle);
std::vector<cppmicroservices::Bundle> reallyInstallBundles(cppmicroservices::BundleContext context,
                                                           const ostrel::platform::Utf16Path& path);

} // namespace ostrel::test
