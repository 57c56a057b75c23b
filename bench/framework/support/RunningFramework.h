#pragma once

#include <cppmicroservices/BundleContext.h>
#include <cppmicroservices/Framework.h>

namespace bench {

/// A framework from its start to its stop.
class RunningFramework {
public:
    RunningFramework();
    ~RunningFramework();

    RunningFramework(RunningFramework const&) = delete;
    RunningFramework& operator=(RunningFramework const&) = delete;

    cppmicroservices::BundleContext context() const { return m_framework.GetBundleContext(); }

private:
    cppmicroservices::Framework m_framework;
};

} // namespace bench
