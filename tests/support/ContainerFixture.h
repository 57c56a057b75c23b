#pragma once

#include "container/MicroServicesContainer.h"
#include "platform/InstallBundles.h"
#include "support/BundleScript.h"
#include "support/Host.h"
#include "support/RecordCapture.h"
#include "support/Threads.h"

#include <cppmicroservices/Bundle.h>

#include <exception>
#include <functional>
#include <memory>
#include <string>

namespace ostrel::test {

using us_container::MicroServicesContainer;

/// A test with a host, a look into its scripted bundles, the library's records, and one container.
class ContainerFixture : public HostFixture {
protected:
    /// State of the one bundle in a file of the bundle directory; STATE_UNINSTALLED if there is none.
    cppmicroservices::Bundle::State stateOf(const std::string& fileName) const
    {
        const cppmicroservices::Bundle bundle = host.bundleIn(fileName);
        return bundle ? bundle.GetState() : cppmicroservices::Bundle::STATE_UNINSTALLED;
    }

    /// What the installation of a file says when it fails.
    std::string installErrorOf(const std::string& fileName) const
    {
        const std::string path = host.directory().string() + "/" + fileName;
        try {
            platform::installBundles(host.context(), platform::Utf16Path{std::filesystem::path{path}.u16string()});
        } catch (const std::exception& e) {
            return e.what();
        }
        return "<the installation did not fail>";
    }

    /// Starts alpha, whose activator starts beta once another thread is inside, or waits for, the operation.
    void startBothDuring(const std::function<void()>& operation)
    {
        host.add("beta");
        Latch begun;
        std::unique_ptr<OtherThread> other;
        script.on("start alpha", [&](auto) {
            script.on("start alpha", nullptr);
            other = std::make_unique<OtherThread>([&] {
                begun.open();
                operation();
            });
            EXPECT_TRUE(begun.waitFor());
            other->finishesWithin(glance);
            container.startBundle("libbeta.so");
        });
        container.startBundle(host.add("alpha"));
        ASSERT_TRUE(other->finishesWithin());
    }

    static constexpr auto active = cppmicroservices::Bundle::STATE_ACTIVE;
    static constexpr auto resolved = cppmicroservices::Bundle::STATE_RESOLVED;
    static constexpr auto installed = cppmicroservices::Bundle::STATE_INSTALLED;
    static constexpr auto uninstalled = cppmicroservices::Bundle::STATE_UNINSTALLED;

    BundleScript script{host.context()};
    RecordCapture log;
    MicroServicesContainer container{host.context(), host.bundleDirectory()};
};

} // namespace ostrel::test
