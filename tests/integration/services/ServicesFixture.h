#pragma once

#include "container/MicroServicesContainer.h"
#include "integration/support/BundleArchive.h"
#include "integration/support/LockProbe.h"
#include "integration/support/Services.h"
#include "support/Host.h"
#include "support/RecordCapture.h"
#include "support/Threads.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace ostrel::test {

/// A host, the records, and one container over the system bundle's context.
///
/// The system bundle is thus the user of all services that the container holds.
class ServicesFixture : public HostFixture {
protected:
    using Names = std::vector<std::string>;

    static LogRecord loaded(const std::string& name) { return {0x10, "Loaded services with name: '" + name + "'"}; }

    /// Adds an archive with one bundle of this name, starts it through the container and returns its context, in which
    /// the test can register services in the bundle's name.
    cppmicroservices::BundleContext startedBundle(const std::string& name)
    {
        const std::string file = addArchive(host, name + ".zip", {bundleWith(name)});
        container.startBundle(file);
        return host.bundleIn(file).GetBundleContext();
    }

    RecordCapture log;
    ostrel::us_container::MicroServicesContainer container{host.context(), host.bundleDirectory()};
};

/// A factory whose service cannot be had: it throws something that is no exception, which the framework lets through.
inline cppmicroservices::InterfaceMapConstPtr throwInt()
{
    throw 42;
}

} // namespace ostrel::test
