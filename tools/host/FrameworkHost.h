#pragma once

#include <platform/Utf16Path.h>

#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/BundleContext.h>
#include <cppmicroservices/Framework.h>

#include <exception>
#include <string>
#include <vector>

namespace ostrel::host {

/// A running framework with the bundles of one directory installed, none of them started.
class FrameworkHost {
public:
    /// @throws Problem (framework) if the framework does not start; (bundle) if a file cannot be installed, or if a
    ///         bundle has no component name, without which the container cannot record it
    static FrameworkHost installing(const ostrel::platform::Utf16Path& directory, const std::string& shownAs);

    cppmicroservices::BundleContext context() const { return m_framework.GetBundleContext(); }
    const std::vector<cppmicroservices::Bundle>& bundles() const { return m_bundles; }

    /// The file of the bundle that a framework error is about, else the directory.
    std::string culprit(const std::string& message) const;

    /// Waits until the framework has stopped.
    /// @throws Problem (framework) if it does not stop
    void stop();

private:
    FrameworkHost(cppmicroservices::Framework framework, std::string shownAs);

    // The last handle to a framework that still runs stops it.
    cppmicroservices::Framework m_framework;
    std::string m_directory;
    std::vector<cppmicroservices::Bundle> m_bundles;
};

} // namespace ostrel::host
