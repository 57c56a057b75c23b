#pragma once

#include <cppmicroservices/BundleContext.h>
#include <cppmicroservices/Framework.h>

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

} // namespace ostrel::host
