#pragma once

#include <cppmicroservices/BundleContext.h>
#include <cppmicroservices/Framework.h>
#include <cppmicroservices/FrameworkEvent.h>
#include <cppmicroservices/FrameworkFactory.h>

#include <gtest/gtest.h>

#include <chrono>

namespace ostrel::test {

/// Stops the framework and waits for it.
inline void stopAndWait(cppmicroservices::Framework& framework)
{
    framework.Stop();
    framework.WaitForStop(std::chrono::milliseconds::zero());
}

/// A test with a started framework that has no bundle but its own.
class StartedFramework : public ::testing::Test {
protected:
    StartedFramework()
    {
        framework.Start();
        context = framework.GetBundleContext();
    }

    ~StartedFramework() override { stopAndWait(framework); }

    cppmicroservices::Framework framework = cppmicroservices::FrameworkFactory().NewFramework();
    cppmicroservices::BundleContext context;
};

} // namespace ostrel::test
