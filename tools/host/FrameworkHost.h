#pragma once

#include <platform/Utf16Path.h>

#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/BundleContext.h>
#include <cppmicroservices/Framework.h>

#include <exception>
#include <string>
#include <vector>

namespace ostrel::host {

/// A framework that runs while this lives.
class RunningFramework {
public:
    /// @throws Problem (framework) if it does not start
    RunningFramework();
    RunningFramework(const RunningFramework&) = delete;
    RunningFramework& operator=(const RunningFramework&) = delete;
    /// Stops it, whatever it says to that.
    ~RunningFramework();

    cppmicroservices::BundleContext context() const { return m_framework.GetBundleContext(); }

    /// Waits until the framework has stopped.
    /// @throws Problem (framework) if it does not stop
    void stop();

private:
    cppmicroservices::Framework m_framework;
};

/// A running framework with the bundles of one directory installed, none of them started.
class FrameworkHost {
public:
    /// @throws Problem (framework) if the framework does not start; (bundle) if files cannot be installed, or bundles
    ///         have no component name, without which the container cannot record them; it names each of them
    static FrameworkHost installing(const ostrel::platform::Utf16Path& directory, const std::string& shownAs);

    cppmicroservices::BundleContext context() const { return m_framework.context(); }
    const std::vector<cppmicroservices::Bundle>& bundles() const { return m_bundles; }

    /// The file of the bundle that a framework error is about, else the directory. Of several that it names, as when
    /// one bundle starts another, it is the last.
    std::string culprit(const std::string& message) const;

    /// @throws Problem (framework) if the framework does not stop
    void stop() { m_framework.stop(); }

private:
    FrameworkHost(const ostrel::platform::Utf16Path& directory, std::string shownAs);

    RunningFramework m_framework;
    std::string m_directory;
    std::vector<cppmicroservices::Bundle> m_bundles;
};

} // namespace ostrel::host
